#pragma once

#include "machine/LogFile.h"

#include <memory>

namespace zrk {

class ConsoleText;

/// A log of the console from start() to stop(): a character that a backspace removes from the console is
/// removed from the log, too.
class ConsoleLog {
  public:
    /// Loop and console must outlive it, and it must outlive every writer to the console.
    ConsoleLog(EventLoop& loop, ConsoleText& console);

    /// Starts a log; see LogFile for record, failures and `failed`.
    void start(const RecordFile& record, FileWriter::Told failed);

    /// Completes the file. Does nothing without a log.
    void stop();

    /// Switches time stamps of this and all later logs, from the next line on.
    void setTimeStamps(bool on);

  private:
    EventLoop& m_loop;
    bool m_hasTimeStamps = false;
    std::unique_ptr<LogFile> m_file; ///< null without a log
};

} // namespace zrk
