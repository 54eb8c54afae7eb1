#include "machine/ProcessGroup.h"

#include <QProcess>
#include <QString>

#ifdef _WIN32
#include <windows.h>
#else
#include <csignal>
#include <unistd.h>
#endif

namespace zrk {

void startInOwnGroup(QProcess& process) {
#ifdef _WIN32
    process.setCreateProcessArgumentsModifier(
        [](QProcess::CreateProcessArguments* arguments) { arguments->flags |= CREATE_NEW_PROCESS_GROUP; });
#else
    process.setChildProcessModifier([] { // between fork and exec: system calls alone
        (void)::setpgid(0, 0);
        // The other program would inherit the signals that this one blocks or ignores.
        sigset_t none;
        sigemptyset(&none);
        (void)::sigprocmask(SIG_SETMASK, &none, nullptr);
        for (const int signal : {SIGPIPE, SIGXFSZ})
            (void)::signal(signal, SIG_DFL);
    });
#endif
}

void endGroup(QProcess& process, bool force) {
#ifdef _WIN32
    if (force)
        process.kill();
    else
        (void)::GenerateConsoleCtrlEvent(CTRL_BREAK_EVENT, static_cast<DWORD>(process.processId()));
#else
    if (process.processId() > 0)
        (void)::kill(-static_cast<pid_t>(process.processId()), force ? SIGKILL : SIGTERM);
#endif
}

void setShellCommand(QProcess& process, const QString& command) {
#ifdef _WIN32
    process.setProgram(QStringLiteral("cmd.exe"));
    // With /s it takes off the outer quotes and leaves the command as it is.
    process.setNativeArguments(QStringLiteral("/d /s /c \"%1\"").arg(command));
#else
    process.setProgram(QStringLiteral("/bin/sh"));
    process.setArguments({QStringLiteral("-c"), QStringLiteral("trap '' PIPE; ") + command});
#endif
}

} // namespace zrk
