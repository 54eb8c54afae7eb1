#include "board/program/DeviceLink.h"

#include <cerrno>
#include <cstddef>
#include <cstring>
#include <functional>
#include <stdexcept>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>
#include <utility>

namespace zrkboard {

namespace fs = std::filesystem;

DeviceLink::DeviceLink(fs::path link, std::string devicePath)
    : m_link(std::move(link)), m_devicePath(std::move(devicePath)) {
    claim();
    std::error_code error;
    const auto status = fs::symlink_status(m_link, error);
    if (fs::exists(status) && !fs::is_symlink(status))
        fail("a file with that name exists, and it is not a link");
    if (fs::exists(status) && !isOurs())
        fail("a link with that name exists, and no board has made it; remove it or name another link");
    fs::remove(m_link, error);
    fs::create_symlink(m_devicePath, m_link, error);
    if (error)
        fail(error.message());
}

// A board's link leads to a pseudo-terminal, and belongs to the account that started the board.
bool DeviceLink::isOurs() const {
    std::error_code error;
    const std::string target = fs::read_symlink(m_link, error).string();
    const std::string folder = "/dev/pts/";
    const bool isTerminal = target.starts_with(folder) && target.size() > folder.size() &&
                            target.find_first_not_of("0123456789", folder.size()) == std::string::npos;
    struct stat link {};
    return !error && isTerminal && ::lstat(m_link.c_str(), &link) == 0 && link.st_uid == ::geteuid();
}

// The device that an old link leads to may be another program's terminal by now. So each board binds a socket
// named after its link, which the system frees at the board's end.
void DeviceLink::claim() {
    std::error_code error;
    const fs::path link = fs::weakly_canonical(fs::absolute(m_link).parent_path(), error) / m_link.filename();
    const std::string name = "zrk-board-link-" + std::to_string(std::hash<std::string>()(link.string()));
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    name.copy(address.sun_path + 1, sizeof address.sun_path - 1); // after a 0: in no folder
    const auto length = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + 1 + name.size());
    m_claim = FileDescriptor(::socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0));
    if (m_claim.isOpen() && ::bind(m_claim.get(), reinterpret_cast<const sockaddr*>(&address), length) == 0)
        return;
    if (errno == EADDRINUSE)
        fail("a running board uses it; end that board or name another link");
    fail(std::strerror(errno));
}

void DeviceLink::fail(const std::string& why) const {
    throw std::runtime_error("cannot make the link " + m_link.string() + ": " + why);
}

DeviceLink::~DeviceLink() {
    // Another board may have taken the name over by now.
    std::error_code error;
    if (fs::read_symlink(m_link, error) == m_devicePath && !error)
        fs::remove(m_link, error);
}

} // namespace zrkboard
