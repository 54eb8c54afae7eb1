#include "machine/LogFile.h"

#include <utility>

namespace zrk {

LogFile::LogFile(const QString& path, EventLoop& loop, FileWriter::Told failed, Clock clock)
    : m_clock(std::move(clock)), m_writer(path, QStringLiteral("log"), loop, std::move(failed)) {}

void LogFile::append(const QByteArray& bytes) {
    const QByteArray stamp = m_hasTimeStamps
                                 ? m_clock().toString(QStringLiteral("yyyy-MM-dd HH:mm:ss.zzz ")).toLatin1()
                                 : QByteArray();
    QByteArray text;
    text.reserve(bytes.size() + stamp.size());
    for (const char byte : bytes) {
        const bool endsLine = byte == '\n' || byte == '\r';
        if (m_isAtLineStart && !endsLine)
            text += stamp;
        m_isAtLineStart = endsLine;
        text += byte;
    }
    m_writer.append(text);
}

} // namespace zrk
