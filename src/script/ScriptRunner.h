#pragma once

#include "controls/Controls.h"
#include "platform/EventLoop.h"
#include "serial/SharedState.h"

#include <QStringList>

namespace zrk {

class ComPort;
class FileDialog;
class Operation;
class Paths;

/// Runs send-and-wait scripts in terminal mode. A line ">text" sends, "<text" waits until the text has
/// been received; "/n" in either is a carriage return; other lines are counted only.
class ScriptRunner {
  public:
    ScriptRunner(SharedState& state, Controls& controls, ComPort& port, const Paths& paths,
                 FileDialog& dialog, Operation& operation, EventLoop& loop);

    /// Lets the user choose a script and runs it to its end inside the call, yielding in its waits.
    /// Every failure ends the run; the second status panel tells how many lines were read.
    void mnuExecScript_Click();

    /// Runs the script at `path`, as above.
    void runScript(const QString& path);

  private:
    void runLines(const QStringList& lines, std::int16_t& counter);
    void finish(int counter);
    void execute(const QString& line, int number);
    void send(const QString& text);
    void waitFor(const QString& text, int number);

    SharedState& m_state;
    Controls& m_controls;
    ComPort& m_port;
    const Paths& m_paths;
    FileDialog& m_dialog;
    Operation& m_operation;
    EventLoop& m_loop;
};

} // namespace zrk
