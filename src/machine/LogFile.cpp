#include "machine/LogFile.h"

#include <utility>

namespace zrk {
namespace {

constexpr std::size_t kMostTakenBack = 4096;

} // namespace

LogFile::LogFile(const RecordFile& record, EventLoop& loop, FileWriter::Told failed, Clock clock)
    : m_clock(std::move(clock)), m_writer(record, QStringLiteral("log"), loop, std::move(failed)) {}

void LogFile::append(const QByteArray& bytes) {
    const QByteArray stamp = m_hasTimeStamps
                                 ? m_clock().toString(QStringLiteral("yyyy-MM-dd HH:mm:ss.zzz ")).toLatin1()
                                 : QByteArray();
    QByteArray text;
    text.reserve(bytes.size() + stamp.size());
    for (const char byte : bytes) {
        const bool endsLine = byte == '\n' || byte == '\r';
        const bool isStamped = m_isAtLineStart && !endsLine && !stamp.isEmpty();
        if (isStamped)
            text += stamp;
        text += byte;
        m_last.push_back({isStamped ? stamp.size() + 1 : 1, std::exchange(m_isAtLineStart, endsLine)});
        if (m_last.size() > kMostTakenBack)
            m_last.pop_front();
    }
    m_writer.append(text);
}

void LogFile::takeBack() {
    if (m_last.empty())
        return;
    m_writer.takeBack(m_last.back().size);
    m_isAtLineStart = m_last.back().wasAtLineStart;
    m_last.pop_back();
}

} // namespace zrk
