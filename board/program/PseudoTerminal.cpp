#include "board/program/PseudoTerminal.h"

#include <array>
#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <sys/ioctl.h>
#include <system_error>
#include <termios.h>

namespace zrkboard {

namespace {

[[noreturn]] void fail(const char* what) {
    throw std::system_error(errno, std::generic_category(),
                            std::string("cannot make a pseudo-terminal: ") + what);
}

FileDescriptor openMaster() {
    FileDescriptor master(::posix_openpt(O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC));
    if (!master.isOpen())
        fail("posix_openpt");
    if (::grantpt(master.get()) != 0 || ::unlockpt(master.get()) != 0)
        fail("grantpt");
    return master;
}

std::string slavePath(int master) {
    std::array<char, 128> path{};
    if (::ptsname_r(master, path.data(), path.size()) != 0)
        fail("ptsname");
    return path.data();
}

// Sets up the line until a loader does so: no echo, no translation, 115200 baud.
void makeRaw(int fd) {
    termios settings{};
    if (::tcgetattr(fd, &settings) != 0)
        fail("tcgetattr");
    ::cfmakeraw(&settings);
    ::cfsetspeed(&settings, B115200);
    if (::tcsetattr(fd, TCSANOW, &settings) != 0)
        fail("tcsetattr");
}

} // namespace

PseudoTerminal::PseudoTerminal() : m_master(openMaster()), m_devicePath(slavePath(m_master.get())) {
    m_slave = FileDescriptor(::open(m_devicePath.c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC));
    if (!m_slave.isOpen())
        fail(m_devicePath.c_str());
    makeRaw(m_slave.get());
}

std::vector<std::uint8_t> PseudoTerminal::read(std::size_t most) {
    std::vector<std::uint8_t> all(most);
    std::size_t size = 0;
    while (size < most) {
        const ssize_t count = ::read(m_master.get(), all.data() + size, most - size);
        if (count <= 0)
            break;
        size += static_cast<std::size_t>(count);
    }
    all.resize(size);
    return all;
}

std::size_t PseudoTerminal::write(std::span<const std::uint8_t> bytes) {
    const ssize_t count = ::write(m_master.get(), bytes.data(), bytes.size());
    return count > 0 ? static_cast<std::size_t>(count) : 0;
}

void PseudoTerminal::stopLoader(bool stopped) {
    if (m_stopped == stopped)
        return;
    m_stopped = stopped;
    (void)::tcflow(m_slave.get(), stopped ? TCOOFF : TCOON);
}

bool PseudoTerminal::inTerminalMode() const {
    termios settings{};
    return ::tcgetattr(m_slave.get(), &settings) == 0 && (settings.c_iflag & IXON) != 0;
}

void PseudoTerminal::forgetLoader() {
    (void)::tcflush(m_slave.get(), TCIFLUSH);
    (void)::ioctl(m_slave.get(), TIOCNXCL);
}

} // namespace zrkboard
