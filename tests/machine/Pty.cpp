#include "Pty.h"

#include <cstdlib>
#include <fcntl.h>
#include <poll.h>
#include <stdexcept>
#include <sys/ioctl.h>
#include <unistd.h>
#include <utility>

namespace zrk::test {
namespace {

constexpr int kPatience = 600'000; // milliseconds; only a fault lasts that long

void check(bool good, const char* what) {
    if (!good)
        throw std::runtime_error(what);
}

void waitFor(int descriptor, short event) {
    pollfd entry{descriptor, event, 0};
    check(::poll(&entry, 1, kPatience) == 1, "pty: nothing happened in ten minutes");
}

} // namespace

Pty::Pty() : m_master(::posix_openpt(O_RDWR | O_NOCTTY)) {
    check(m_master >= 0 && ::grantpt(m_master) == 0 && ::unlockpt(m_master) == 0, "pty: cannot be made");
    m_device = QString::fromLocal8Bit(::ptsname(m_master));
    m_slave = ::open(m_device.toLocal8Bit().constData(), O_RDWR | O_NOCTTY);
    check(m_slave >= 0, "pty: its device cannot be opened");
    termios line = settings();
    ::cfmakeraw(&line);
    setSettings(line);
}

Pty::~Pty() {
    hangUp();
    ::close(m_slave);
}

void Pty::send(const QByteArray& bytes) {
    for (QByteArrayView rest = bytes; !rest.isEmpty();) {
        waitFor(m_master, POLLOUT);
        const auto count = ::write(m_master, rest.data(), static_cast<std::size_t>(rest.size()));
        check(count > 0, "pty: write failed");
        rest = rest.sliced(count);
    }
}

QByteArray Pty::receive(qsizetype count) {
    QByteArray bytes(count, '\0');
    for (qsizetype done = 0; done < count;) {
        waitFor(m_master, POLLIN);
        const auto got = ::read(m_master, bytes.data() + done, static_cast<std::size_t>(count - done));
        check(got > 0, "pty: read failed");
        done += got;
    }
    return bytes;
}

bool Pty::hasReceived() const {
    pollfd entry{m_master, POLLIN, 0};
    return ::poll(&entry, 1, 0) == 1;
}

void Pty::waitForUnread(int count) const {
    for (int unread = 0; unread < count;) {
        waitFor(m_slave, POLLIN);
        check(::ioctl(m_slave, FIONREAD, &unread) == 0, "pty: cannot count");
    }
}

void Pty::setFlow(int action) const {
    check(::tcflow(m_slave, action) == 0, "pty: cannot stop or restart");
}

void Pty::hangUp() {
    if (m_master >= 0)
        ::close(std::exchange(m_master, -1));
}

termios Pty::settings() const {
    termios line = {};
    check(::tcgetattr(m_slave, &line) == 0, "pty: no settings");
    return line;
}

void Pty::setSettings(const termios& line) const {
    check(::tcsetattr(m_slave, TCSANOW, &line) == 0, "pty: settings refused");
}

} // namespace zrk::test
