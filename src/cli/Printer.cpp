#include "cli/Printer.h"

#include "machine/StandardStreams.h"

#include <algorithm>
#include <cstdio>

namespace zrk {
namespace {

void write(std::FILE* stream, const QByteArray& bytes) {
    (void)std::fwrite(bytes.constData(), 1, static_cast<std::size_t>(bytes.size()), stream);
    std::fflush(stream);
}

} // namespace

Printer::Printer(PrintStyle style)
    : m_style(style), m_overwrites(standardErrorIsTerminal() &&
                                   style.progress != PrintStyle::Progress::Never && !style.quiet),
      m_showsProgress(style.progress == PrintStyle::Progress::Always ||
                      (style.progress == PrintStyle::Progress::Auto && !style.quiet)),
      m_outputIsTerminal(standardOutputIsTerminal()) {}

void Printer::out(const QByteArray& bytes) {
    const std::scoped_lock lock(m_mutex);
    clear();
    write(stdout, bytes);
    show();
}

void Printer::err(const QByteArray& bytes) {
    const std::scoped_lock lock(m_mutex);
    clear();
    write(stderr, bytes);
    show();
}

void Printer::setProgress(std::size_t row, const QString& text, const QString& behind) {
    const std::scoped_lock lock(m_mutex);
    if (m_rows.size() <= row)
        m_rows.resize(row + 1);
    clear();
    m_rows[row] = text;
    m_behind = behind;
    show();
}

void Printer::clearProgress() {
    const std::scoped_lock lock(m_mutex);
    clear();
    m_rows.clear();
}

qsizetype Printer::columns() const {
    return terminalColumns() - 1; // a terminal may go on to the next line behind the last column
}

bool Printer::wasLost() const {
    return std::ferror(stdout) != 0;
}

/// From the last row up to the first.
void Printer::clear() {
    if (m_shown.empty())
        return;
    QByteArray bytes;
    for (auto length = m_shown.rbegin(); length != m_shown.rend(); ++length) {
        bytes += '\r' + QByteArray(std::min(*length, columns()), ' ') + '\r';
        if (length + 1 != m_shown.rend())
            bytes += "\x1B[A";
    }
    write(stderr, bytes + m_behind.toLocal8Bit());
    m_shown.clear();
}

void Printer::show() {
    if (!m_overwrites)
        return;
    QByteArray bytes;
    for (const QString& row : m_rows) {
        if (row.isEmpty())
            continue;
        const QString line = row.left(columns());
        bytes += (m_shown.empty() ? QByteArray("\r") : QByteArray("\n")) + line.toLocal8Bit();
        m_shown.push_back(line.size());
    }
    if (!bytes.isEmpty())
        write(stderr, bytes);
}

} // namespace zrk
