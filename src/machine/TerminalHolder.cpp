#include "machine/TerminalHolder.h"

#include <cctype>
#include <filesystem>
#include <fstream>
#include <optional>
#include <sstream>
#include <sys/ioctl.h>
#include <sys/sysmacros.h>
#include <unistd.h>

namespace zrk {
namespace {

namespace fs = std::filesystem;

/// The system's facts about a process that matter here.
struct Process {
    std::string name;
    int session = 0;
    int terminal = 0; ///< the number of its controlling terminal's device; 0: none
};

std::optional<Process> processIn(const fs::path& folder) {
    std::ifstream file(folder / "stat");
    std::string text;
    std::getline(file, text, '\0');
    // "4711 (name) S parent group session terminal": the name may contain anything.
    const auto begin = text.find('(');
    const auto end = text.rfind(')');
    if (begin == std::string::npos || end == std::string::npos)
        return {};
    Process process;
    process.name = text.substr(begin + 1, end - begin - 1);
    std::istringstream fields(text.substr(end + 1));
    std::string ignored;
    fields >> ignored >> ignored >> ignored >> process.session >> process.terminal;
    return fields ? std::optional(process) : std::nullopt;
}

/// Returns the terminal's number as processes have it; 0 if it is not a terminal.
int numberOf(int descriptor) {
    unsigned int number = 0;
#ifdef TIOCGDEV
    if (::ioctl(descriptor, TIOCGDEV, &number) != 0)
        return 0;
#endif
    return static_cast<int>(number);
}

bool isStandardStream(int device) {
    return numberOf(STDIN_FILENO) == device || numberOf(STDOUT_FILENO) == device ||
           numberOf(STDERR_FILENO) == device;
}

std::string holderOf(int device) {
    if (device == 0)
        return {};
    const int own = isStandardStream(device) ? 0 : ::getsid(0);
    std::string holder;
    std::error_code fault;
    for (fs::directory_iterator entry("/proc", fault), end; !fault && entry != end; entry.increment(fault)) {
        const std::string number = entry->path().filename().string();
        if (std::isdigit(static_cast<unsigned char>(number.front())) == 0)
            continue;
        const auto process = processIn(entry->path());
        if (!process || process->terminal != device || process->session == own)
            continue;
        holder = process->name + " (" + number + ")";
        if (number == std::to_string(process->session)) // the session's leader, not a program started there
            break;
    }
    return holder;
}

} // namespace

std::string terminalHolder(dev_t device) {
    constexpr unsigned kMinorLow = 0xFF; // the system's form of a process's terminal
    const unsigned number =
        (minor(device) & kMinorLow) | (major(device) << 8U) | ((minor(device) & ~kMinorLow) << 12U);
    return holderOf(static_cast<int>(number));
}

std::string terminalHolder(int descriptor) {
    return holderOf(numberOf(descriptor));
}

} // namespace zrk
