#pragma once

class QProcess;
class QString;

namespace zrk {

/// Makes the process, once it is started, run in a process group of its own and with the signals as a shell
/// sets them: a Ctrl-C for this program does not reach it. It cannot read from the terminal either.
void startInOwnGroup(QProcess& process);

/// Asks the running process and its group to end, or with `force` ends them at once. On Windows the force
/// reaches the process alone.
void endGroup(QProcess& process, bool force);

/// Has the process run a command line in the system's shell when it is started. What it prints cannot end it
/// when this program has gone.
void setShellCommand(QProcess& process, const QString& command);

} // namespace zrk
