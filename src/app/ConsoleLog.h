#pragma once

#include "machine/LogFile.h"

#include <memory>

namespace zrk {

class ConsoleText;

/// Logs what comes into the console from start() to stop(), as the console holds it: a character that a
/// backspace takes from the console goes from the log, too.
class ConsoleLog {
  public:
    /// Loop and console must outlive it, and it whatever comes into the console.
    ConsoleLog(EventLoop& loop, ConsoleText& console);

    /// See LogFile for path, failures and `failed`.
    void start(const QString& path, FileWriter::Told failed);

    /// The file is complete then. Does nothing without a log.
    void stop();

    /// Of this and all later logs, from the next line on.
    void setTimeStamps(bool on);

  private:
    EventLoop& m_loop;
    bool m_hasTimeStamps = false;
    std::unique_ptr<LogFile> m_file; ///< null: none
};

} // namespace zrk
