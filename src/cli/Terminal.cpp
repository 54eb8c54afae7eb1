#include "cli/Terminal.h"

#include "machine/TerminalQuestion.h"

#include <cstdio>

namespace zrk {
namespace {

QByteArray systemLines(const QString& text) {
    QString lines = text;
    lines.replace(QLatin1String("\r\n"), QLatin1String("\n"));
    return lines.toLocal8Bit();
}

} // namespace

void tell(const QString& text) {
    std::fprintf(stderr, "%s\n", systemLines(text).constData());
    std::fflush(stderr);
}

void copyToStandardOutput(ConsoleText& console, std::function<void()> before) {
    console.onEdit([before = std::move(before)](qsizetype /*removed*/, const QString& inserted) {
        before();
        QByteArray bytes = systemLines(inserted);
        // The NUL that a cancelled wait echoes would make a log file count as binary.
        bytes.replace(QByteArray(1, '\0'), QByteArray());
        (void)std::fwrite(bytes.constData(), 1, static_cast<std::size_t>(bytes.size()), stdout);
        std::fflush(stdout);
    });
}

Answer TerminalMessages::show(const MessageBox& box) {
    // The title "Error" says nothing that "Error communicating with COM1" does not.
    const bool titled = !box.title.isEmpty() && !box.prompt.startsWith(box.title);
    const QString text = titled ? box.title + QStringLiteral(": ") + box.prompt : box.prompt;
    if (box.buttons == MessageButtons::Ok) {
        tell(text);
        return Answer::Ok;
    }
    if (!m_mayAsk || !m_question.isPossible()) {
        tell(text + QStringLiteral(" Yes (nobody to ask)"));
        return Answer::Yes;
    }
    std::fprintf(stderr, "\n%s [y/n] ", systemLines(text).constData());
    std::fflush(stderr);
    m_asking = true;
    const bool yes = m_question.askYesNo();
    m_asking = false;
    return yes ? Answer::Yes : Answer::No;
}

} // namespace zrk
