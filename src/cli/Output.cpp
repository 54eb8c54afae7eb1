#include "cli/Output.h"

#include "machine/StandardStreams.h"

#include <cstdio>

namespace zrk {
namespace {

constexpr qsizetype kColumns = 79;

QByteArray systemLines(const QString& text) {
    QString lines = text;
    lines.replace(QLatin1String("\r\n"), QLatin1String("\n"));
    return lines.toLocal8Bit();
}

void write(std::FILE* stream, const QByteArray& bytes) {
    (void)std::fwrite(bytes.constData(), 1, static_cast<std::size_t>(bytes.size()), stream);
    std::fflush(stream);
}

} // namespace

Output::Output()
    : m_overwrites(standardErrorIsTerminal()), m_shared(m_overwrites && standardOutputIsTerminal()) {}

void Output::console(const QString& text) {
    clearProgress();
    // The NUL that a cancelled wait echoes would make a log file count as binary.
    QByteArray bytes = systemLines(text);
    bytes.replace(QByteArray(1, '\0'), QByteArray());
    write(stdout, bytes);
    m_unfinished += QString::fromLocal8Bit(bytes);
    m_unfinished = m_unfinished.mid(m_unfinished.lastIndexOf(QLatin1Char('\n')) + 1);
}

void Output::tell(const QString& text) {
    clearProgress();
    write(stderr, systemLines(text) + '\n');
}

void Output::ask(const QString& text) {
    clearProgress();
    write(stderr, '\n' + systemLines(text) + " [y/n] ");
}

void Output::progress(const QString& text) {
    if (!m_overwrites)
        return tell(text);
    // What is shown in front comes back when the line is cleared, which is before the console goes on.
    m_behind = m_shared ? m_unfinished : QString();
    const QString line =
        ((m_behind.isEmpty() ? QString() : m_behind + QStringLiteral(" ")) + text).left(kColumns);
    write(stderr, '\r' + line.leftJustified(qMax(m_shownLength, line.size())).toLocal8Bit());
    m_shownLength = line.size();
}

void Output::clearProgress() {
    if (m_shownLength == 0)
        return;
    write(stderr, '\r' + QByteArray(m_shownLength, ' ') + '\r' + m_behind.toLocal8Bit());
    m_shownLength = 0;
}

bool Output::wasLost() const {
    return std::ferror(stdout) != 0;
}

} // namespace zrk
