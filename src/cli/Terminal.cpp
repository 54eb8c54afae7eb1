#include "cli/Terminal.h"

#include "platform/TerminalQuestion.h"

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

void copyToStandardOutput(ConsoleText& console) {
    console.onEdit([](qsizetype /*removed*/, const QString& inserted) {
        QByteArray bytes = systemLines(inserted);
        // The NUL that a cancelled wait echoes would make a log file count as binary.
        bytes.replace(QByteArray(1, '\0'), QByteArray());
        (void)std::fwrite(bytes.constData(), 1, static_cast<std::size_t>(bytes.size()), stdout);
        std::fflush(stdout);
    });
}

Answer TerminalMessages::show(const MessageBox& box) {
    const QString text = box.title.isEmpty() ? box.prompt : box.title + QStringLiteral(": ") + box.prompt;
    if (box.buttons == MessageButtons::Ok) {
        tell(text);
        return Answer::Ok;
    }
    if (!m_question.isPossible()) {
        tell(text + QStringLiteral(" Yes (nobody to ask)"));
        return Answer::Yes;
    }
    std::fprintf(stderr, "%s [y/n] ", systemLines(text).constData());
    std::fflush(stderr);
    return m_question.askYesNo() ? Answer::Yes : Answer::No;
}

} // namespace zrk
