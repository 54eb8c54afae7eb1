#pragma once

#include "machine/FileWriter.h"

#include <QDateTime>

namespace zrk {

/// What the board said and the loader printed, in a file as it comes: bytes that were received as they are,
/// the loader's own words in UTF-8. With time stamps each line that is not empty begins with the local time
/// at which its first character came: "2026-03-01 14:05:06.789 ".
class LogFile {
  public:
    using Clock = std::function<QDateTime()>;

    /// As FileWriter has it.
    LogFile(
        const QString& path, EventLoop& loop, FileWriter::Told failed,
        Clock clock = [] { return QDateTime::currentDateTime(); });

    /// From the next line on.
    void setTimeStamps(bool on) { m_hasTimeStamps = on; }

    void append(const QByteArray& bytes);

    /// As FileWriter has it.
    void end() { m_writer.end(); }

  private:
    Clock m_clock;
    bool m_hasTimeStamps = false;
    bool m_isAtLineStart = true;
    FileWriter m_writer;
};

} // namespace zrk
