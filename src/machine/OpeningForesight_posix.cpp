#include "machine/OpeningForesight.h"
#include "machine/TerminalHolder.h"

#include <array>
#include <cerrno>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <grp.h>
#include <iomanip>
#include <sstream>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unistd.h>

namespace zrk {
namespace {

namespace fs = std::filesystem;

// Returns the group that may read and write the device; "" if membership would not help.
std::string groupWithAccess(const std::string& device) {
    struct stat facts = {};
    constexpr mode_t kNeeded = S_IRGRP | S_IWGRP;
    if (::stat(device.c_str(), &facts) != 0 || (facts.st_mode & kNeeded) != kNeeded)
        return {};
    if (facts.st_gid == 0)
        return {}; // a user should not join it
    struct group entry = {};
    struct group* found = nullptr;
    std::array<char, 4096> texts{};
    if (::getgrgid_r(facts.st_gid, &entry, texts.data(), texts.size(), &found) == 0 && found != nullptr)
        return found->gr_name;
    return std::to_string(facts.st_gid);
}

/// Detects a device such as /dev/null. Only terminals are serial ports; pseudo-terminals have no entry.
bool isNoTerminal(const struct stat& device) {
    std::error_code fault;
    const fs::path kind = fs::canonical("/sys/dev/char/" + std::to_string(major(device.st_rdev)) + ':' +
                                            std::to_string(minor(device.st_rdev)) + "/subsystem",
                                        fault);
    return !fault && kind.filename() != "tty";
}

/// Returns "minicom (4711)".
std::string processName(const std::string& number) {
    std::ifstream file("/proc/" + number + "/comm");
    std::string name;
    std::getline(file, name);
    return (name.empty() ? "a program" : name) + " (" + number + ")";
}

/// Returns the number of the process that has locked the device; "" if none shows.
std::string lockHolder(const struct stat& device) {
    std::ostringstream file;
    file << std::hex << std::setfill('0') << std::setw(2) << major(device.st_dev) << ':' << std::setw(2)
         << minor(device.st_dev) << std::dec << ':' << device.st_ino;
    std::ifstream locks("/proc/locks");
    for (std::string line; std::getline(locks, line);) {
        // "1: FLOCK  ADVISORY  WRITE 4711 00:06:123 0 EOF"
        std::istringstream fields(line);
        std::string number;
        std::string kind;
        std::string ignored;
        std::string process;
        std::string place;
        fields >> number >> kind >> ignored >> ignored >> process >> place;
        if (kind == "FLOCK" && place == file.str())
            return process;
    }
    return {};
}

} // namespace

OpenResult openFailure(int error, const std::string& device) {
    switch (error) {
    case ENOENT:
    case ENXIO:
    case ENODEV:
        return {OpenFault::NoSuchDevice};
    case EBUSY:
    case EWOULDBLOCK:
        return {OpenFault::InUse};
    case EACCES:
    case EPERM:
        return {OpenFault::PermissionDenied, {}, {}, groupWithAccess(device)};
    case ENOTTY:
    case EISDIR:
        return {OpenFault::NotASerialPort};
    default: {
        const bool isScarce = error == EMFILE || error == ENFILE || error == ENOMEM;
        return {isScarce ? OpenFault::Scarce : OpenFault::Other,
                boost::system::error_code(error, boost::system::system_category()).message()};
    }
    }
}

OpenResult foreseeOpening(const std::string& device) {
    struct stat facts {};
    if (::stat(device.c_str(), &facts) != 0)
        return openFailure(errno, device);
    if (!S_ISCHR(facts.st_mode) || isNoTerminal(facts))
        return {OpenFault::NotASerialPort};
    if (::faccessat(AT_FDCWD, device.c_str(), R_OK | W_OK, AT_EACCESS) != 0)
        return openFailure(errno, device);
    if (std::string holder = terminalHolder(facts.st_rdev); !holder.empty())
        return {OpenFault::InUse, std::move(holder)};
    if (const std::string holder = lockHolder(facts); !holder.empty())
        return {OpenFault::InUse, {}, holder == std::to_string(::getpid()) ? "" : processName(holder)};
    return {};
}

} // namespace zrk
