#pragma once

#include "serial/Link.h"

#include <QStringList>

namespace zrk {

class Paths;

/// Runs send-and-wait scripts in terminal mode. A line ">text" sends, "<text" waits until the text has
/// been received; "/n" in either is a carriage return; other lines are counted only.
class ScriptRunner {
  public:
    ScriptRunner(Link& link, const Paths& paths);

    /// Lets the user choose a script and runs it to its end inside the call, yielding in its waits.
    /// Every failure ends the run; the second status panel tells how many lines were read, the
    /// first, afterwards, why it ended.
    void mnuExecScript_Click();

    /// Runs the script at `path`, as above.
    void runScript(const QString& path);

  private:
    void runLines(const QStringList& lines, std::int16_t& counter);
    void finish(int counter);
    void execute(const QString& line, int number);
    void send(const QString& text);
    void waitFor(const QString& text, int number);

    Link& m_link;
    const Paths& m_paths;
};

} // namespace zrk
