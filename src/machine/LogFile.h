#pragma once

#include "machine/FileWriter.h"

#include <QDateTime>

#include <deque>

namespace zrk {

/// The console's text in a file as it comes: the board's characters as bytes, the loader's own text in UTF-8.
/// With time stamps each line that is not empty begins with the local time at which its first character came:
/// "2026-03-01 14:05:06.789 ".
class LogFile {
  public:
    using Clock = std::function<QDateTime()>;

    /// See FileWriter.
    LogFile(
        const RecordFile& record, EventLoop& loop, FileWriter::Told failed,
        Clock clock = [] { return QDateTime::currentDateTime(); });

    /// Switches time stamps from the next line on.
    void setTimeStamps(bool on) { m_hasTimeStamps = on; }

    void append(const QByteArray& bytes);

    /// Removes the last byte, and the stamp in front of it; does so for the last 4096 bytes at most.
    void takeBack();

    /// See FileWriter.
    void end() { m_writer.end(); }

  private:
    struct Taken {
        qsizetype size = 1; ///< of the byte with its stamp
        bool wasAtLineStart = false;
    };

    Clock m_clock;
    bool m_hasTimeStamps = false;
    bool m_isAtLineStart = true;
    std::deque<Taken> m_last; ///< of the last bytes
    FileWriter m_writer;
};

} // namespace zrk
