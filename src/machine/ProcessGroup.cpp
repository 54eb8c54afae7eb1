#include "machine/ProcessGroup.h"

#include <QProcess>

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
        // What this program holds back or ignores, the other one would hold back or ignore as well.
        sigset_t none;
        sigemptyset(&none);
        (void)::sigprocmask(SIG_SETMASK, &none, nullptr);
        for (const int signal : {SIGPIPE, SIGXFSZ})
            (void)::signal(signal, SIG_DFL);
    });
#endif
}

} // namespace zrk
