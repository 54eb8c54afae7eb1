#pragma once

#include "serial/Link.h"

#include <QStringList>

#include <chrono>
#include <optional>

namespace zrk {

/// A runner of send-and-wait scripts in terminal mode. A line ">text" sends, "<text" waits until the text has
/// been received; "/n" in either is a carriage return; other lines are counted only.
class ScriptRunner {
  public:
    explicit ScriptRunner(Link& link);

    /// Lets the user choose a script and runs it to its end inside the call, yielding in its waits. Every
    /// failure ends the run; the second status panel shows how many lines were read, the first, afterwards,
    /// why it ended.
    void mnuExecScript_Click();

    /// Runs the script at `path`, as above. With a limit, a line that waits or is sent for so long ends the
    /// run with LimitReached; the failure then shows what the board sent last or how much went out.
    void runScript(const QString& path, std::optional<std::chrono::milliseconds> waitLimit = {});

  private:
    void runLines(const QStringList& lines, std::int16_t& counter);
    void finish(int counter);
    void execute(const QString& line, int number);
    void send(const QString& text);
    void waitFor(const QString& text, int number);
    void requireTime(const QString& shown) const;

    Link& m_link;
    std::optional<std::chrono::milliseconds> m_waitLimit;
    qsizetype m_consoleAtStart = 0; ///< where the console's text of this run begins
};

} // namespace zrk
