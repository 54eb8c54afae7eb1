#pragma once

class QProcess;

namespace zrk {

/// Lets the process, once it is started, run in a process group of its own and with the signals as a shell
/// hands them out: a Ctrl-C that is meant for this program does not reach it. It cannot read from the
/// terminal either.
void startInOwnGroup(QProcess& process);

} // namespace zrk
