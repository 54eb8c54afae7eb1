#include "cli/Printer.h"

#include "machine/StandardStreams.h"

#include <algorithm>

namespace zrk {
namespace {

/// Progress that a stopped terminal would show later would be out of date.
constexpr qsizetype kMostUnderProgress = 4096;

} // namespace

Printer::Printer(PrintStyle style, OutputStreams& streams)
    : m_streams(streams), m_style(style),
      m_overwrites(standardErrorIsTerminal() && terminalOverwrites() &&
                   style.progress != PrintStyle::Progress::Never && !style.quiet),
      m_showsProgress(style.progress == PrintStyle::Progress::Always ||
                      (style.progress == PrintStyle::Progress::Auto && !style.quiet)),
      m_outputIsTerminal(standardOutputIsTerminal()) {}

void Printer::out(const QByteArray& bytes, Weight weight) {
    const std::scoped_lock lock(m_mutex);
    clear();
    m_streams.out(bytes, weight);
    show();
}

void Printer::err(const QByteArray& bytes, Weight weight) {
    const std::scoped_lock lock(m_mutex);
    clear();
    m_streams.err(bytes, weight);
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
    return terminalColumns() - 1; // a terminal may go on to the next line after the last column
}

bool Printer::isBehind() const {
    return m_streams.waitingOutput() > StreamWriter::kMostWaiting / 2;
}

/// Clears from the last row up to the first. It must not be left out, or later rows would overwrite text.
void Printer::clear() {
    if (m_shown.empty())
        return;
    QByteArray bytes;
    for (auto length = m_shown.rbegin(); length != m_shown.rend(); ++length) {
        bytes += '\r' + QByteArray(std::min(*length, columns()), ' ') + '\r';
        if (length + 1 != m_shown.rend())
            bytes += "\x1B[A";
    }
    m_streams.err(bytes + m_behind.toLocal8Bit(), Weight::Result);
    m_shown.clear();
}

/// No more than the terminal has rows, for the cursor cannot go up to those that have left it.
QStringList Printer::visibleRows() const {
    QStringList rows;
    for (const QString& row : m_rows)
        rows += row.isEmpty() ? QStringList() : QStringList(row);
    const qsizetype room = std::max(terminalRows() - 1, 1);
    if (rows.size() <= room)
        return rows;
    const qsizetype hidden = rows.size() - room + 1;
    return rows.mid(0, room - 1) << QStringLiteral("%1 more boards").arg(hidden);
}

void Printer::show() {
    if (!m_overwrites || m_streams.waitingError() > kMostUnderProgress)
        return;
    QByteArray bytes;
    for (const QString& row : visibleRows()) {
        const QString line = row.left(columns());
        bytes += (m_shown.empty() ? QByteArray("\r") : QByteArray("\n")) + line.toLocal8Bit();
        m_shown.push_back(line.size());
    }
    if (!bytes.isEmpty())
        m_streams.err(bytes);
}

} // namespace zrk
