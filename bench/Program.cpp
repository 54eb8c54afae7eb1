#include "Program.h"

#include "board/launcher/BoardProcess.h"

#include <csignal>
#include <stdexcept>

namespace zrkbench {

Program::Program(const char* name, const QStringList& arguments) {
    constexpr int kStartLimit = 30'000; // milliseconds
    setProgram(QString::fromStdString(zrkboard::siblingProgram(name)));
    setArguments(arguments);
    // A job in the background ignores it and passes that on.
    setChildProcessModifier([] { (void)::signal(SIGINT, SIG_DFL); });
    start();
    if (!waitForStarted(kStartLimit))
        throw std::runtime_error(std::string(name) + " did not start");
}

Program::~Program() {
    kill();
    waitForFinished();
}

} // namespace zrkbench
