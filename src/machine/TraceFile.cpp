#include "machine/TraceFile.h"

#include <QDateTime>

#include <algorithm>
#include <utility>

namespace zrk {

using namespace std::chrono_literals;

namespace {

constexpr qsizetype kBytesInLine = 16;
constexpr std::chrono::milliseconds kTogether = 20ms;

QByteArray printable(QByteArray bytes) {
    for (char& byte : bytes)
        byte = byte >= ' ' && byte <= '~' ? byte : '.';
    return bytes;
}

QByteArray header() {
    return "# zrk trace 1\n# began " +
           QDateTime::currentDateTime()
               .toOffsetFromUtc(QDateTime::currentDateTime().offsetFromUtc())
               .toString(Qt::ISODateWithMs)
               .toLatin1() +
           "\n# seconds, > to the board, < from the board\n";
}

QByteArray stamp(std::chrono::microseconds at) {
    return QByteArray::number(static_cast<double>(at.count()) / 1e6, 'f', 6).rightJustified(12) + ' ';
}

} // namespace

TraceFile::TraceFile(const RecordFile& record, EventLoop& loop, Told failed)
    : m_loop(loop), m_began(loop.now()), m_writer(record, QStringLiteral("trace"), loop, std::move(failed)),
      m_finish(loop.createTimer([this] { finishLine(); })) {
    m_writer.append(header());
}

TraceFile::~TraceFile() {
    end();
}

void TraceFile::bytes(Direction direction, QByteArrayView bytes) {
    const auto at = now();
    const char kind = static_cast<char>(direction);
    if (!m_bytes.isEmpty() && (m_kind != kind || at - m_at >= kTogether))
        finishLine();
    while (!bytes.isEmpty()) {
        if (m_bytes.isEmpty())
            startLine(at, kind);
        const auto part = bytes.first(std::min(kBytesInLine - m_bytes.size(), bytes.size()));
        m_bytes.append(part);
        bytes = bytes.sliced(part.size());
        if (m_bytes.size() == kBytesInLine)
            finishLine();
    }
}

void TraceFile::event(const QString& text) {
    finishLine();
    m_writer.append(stamp(now()) + text.simplified().toUtf8() + '\n');
}

void TraceFile::end() {
    finishLine();
    m_writer.end();
}

std::chrono::microseconds TraceFile::now() const {
    return std::chrono::duration_cast<std::chrono::microseconds>(m_loop.now() - m_began);
}

void TraceFile::startLine(std::chrono::microseconds at, char kind) {
    m_at = at;
    m_kind = kind;
    m_finish->start(kTogether);
}

void TraceFile::finishLine() {
    m_finish->stop();
    if (m_bytes.isEmpty())
        return;
    m_writer.append(stamp(m_at) + m_kind + ' ' + m_bytes.toHex(' ').leftJustified(3 * kBytesInLine) + '|' +
                    printable(m_bytes) + "|\n");
    m_bytes.clear();
}

} // namespace zrk
