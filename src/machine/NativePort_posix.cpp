#include "files/Descriptor.h"
#include "machine/NativePort.h"
#include "machine/OpeningForesight.h"
#include "machine/TerminalHolder.h"
#include "platform/SerialPort.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/ioctl.h>
#include <termios.h>
#include <unistd.h>

#ifdef __linux__
#include <linux/serial.h>
#endif

namespace zrk {
namespace {

constexpr cc_t kXon = 0x11;
constexpr cc_t kXoff = 0x13;

// Resets more than cfmakeraw(), which keeps what an earlier user may have set: flow control in either
// direction, its characters, and parity that is always mark or space.
void makeRaw(termios& line) {
    ::cfmakeraw(&line);
    line.c_iflag &= ~static_cast<tcflag_t>(IXON | IXOFF | IXANY | INPCK);
    line.c_cflag |= CREAD | CLOCAL;
    line.c_cflag &= ~static_cast<tcflag_t>(CRTSCTS);
    // A board that is reset by DTR must not be reset when one program closes the port and the next opens it.
    line.c_cflag &= ~static_cast<tcflag_t>(HUPCL);
#ifdef CMSPAR
    line.c_cflag &= ~static_cast<tcflag_t>(CMSPAR);
#endif
    line.c_cc[VSTART] = kXon;
    line.c_cc[VSTOP] = kXoff;
    line.c_cc[VMIN] = 1;
    line.c_cc[VTIME] = 0;
}

bool switchLine(int handle, int line, bool on) noexcept {
    return ::ioctl(handle, on ? TIOCMBIS : TIOCMBIC, &line) == 0;
}

} // namespace

OpenResult NativePort::open(const std::string& device) {
    // Opening a port switches its DTR, and what is no port may act.
    if (OpenResult foreseen = foreseeOpening(device); foreseen.fault != OpenFault::None)
        return foreseen;
    Descriptor descriptor(::open(device.c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC));
    if (descriptor.number() < 0)
        return openFailure(errno, device);
    termios line = {};
    if (::tcgetattr(descriptor.number(), &line) != 0)
        return openFailure(errno, device);
    // A shell whose terminal is made raw no longer answers, and a log-in on the board's port would answer
    // instead of the board.
    if (std::string holder = terminalHolder(descriptor.number()); !holder.empty())
        return {OpenFault::InUse, std::move(holder)};
    // Before any change, which would disturb the program that has the line. Only the lock keeps out root,
    // whom TIOCEXCL does not.
    if (::flock(descriptor.number(), LOCK_EX | LOCK_NB) != 0)
        return openFailure(errno, device);
    makeRaw(line);
    if (::tcsetattr(descriptor.number(), TCSANOW, &line) != 0)
        return openFailure(errno, device);
    boost::system::error_code error;
    m_stream.assign(descriptor.number(), error);
    if (error)
        return openFailure(error.value(), device);
    m_handle = descriptor.release();
    ::ioctl(m_handle, TIOCEXCL);
    return {};
}

bool NativePort::applySettings(const LineSettings& settings) {
    using Options = boost::asio::serial_port_base;
    const auto parity = settings.parity == 'E'   ? Options::parity::even
                        : settings.parity == 'O' ? Options::parity::odd
                                                 : Options::parity::none;
    const auto stopBits = settings.stopBits == 2 ? Options::stop_bits::two : Options::stop_bits::one;
    bool accepted = settings.dataBits >= 5 && settings.dataBits <= 8 && settings.baudRate > 0;
    const auto apply = [&](const auto& option) {
        boost::system::error_code error;
        accepted = accepted && !m_stream.set_option(option, error);
    };
    apply(Options::baud_rate(static_cast<unsigned>(settings.baudRate)));
    apply(Options::character_size(accepted ? static_cast<unsigned>(settings.dataBits) : 8));
    apply(Options::parity(parity));
    apply(Options::stop_bits(stopBits));
    return accepted;
}

void NativePort::close() noexcept {
    if (!m_stream.is_open())
        return;
    // close() would wait for a stopped line up to half a minute. With nothing left to send there is nothing
    // to drop, and a flush could still catch bytes on their way through a pseudo-terminal.
    if (unsentBytes() > 0)
        ::tcflush(m_handle, TCOFLUSH);
    // The mark would stay on the device as long as another program has it open, too.
    ::ioctl(m_handle, TIOCNXCL);
    boost::system::error_code ignored;
    m_stream.close(ignored);
}

// Never: a hang-up ends the read.
std::chrono::milliseconds NativePort::lookInterval() const {
    return {};
}

boost::system::error_code NativePort::look() noexcept {
    return {};
}

void NativePort::discardReceived() noexcept {
    ::tcflush(m_handle, TCIFLUSH);
}

bool NativePort::setXonXoff(bool on) noexcept {
    termios line = {};
    if (::tcgetattr(m_handle, &line) != 0)
        return false;
    constexpr auto kBoth = static_cast<tcflag_t>(IXON | IXOFF);
    line.c_iflag = on ? line.c_iflag | kBoth : line.c_iflag & ~kBoth;
    return ::tcsetattr(m_handle, TCSANOW, &line) == 0;
}

bool NativePort::setDtr(bool on) noexcept {
    return switchLine(m_handle, TIOCM_DTR, on);
}

bool NativePort::holdLines(const LineSettings& settings) noexcept {
    return (!settings.dtr || setDtr(*settings.dtr)) &&
           (!settings.rts || switchLine(m_handle, TIOCM_RTS, *settings.rts));
}

std::size_t NativePort::unsentBytes() const noexcept {
    int queued = 0;
    if (::ioctl(m_handle, TIOCOUTQ, &queued) != 0)
        return 0;
    if (queued > 0)
        return static_cast<std::size_t>(queued);
#ifdef TIOCSERGETLSR
    // The last bytes are in the chip, which the driver's count leaves out.
    unsigned int state = 0;
    if (::ioctl(m_handle, TIOCSERGETLSR, &state) == 0 && (state & TIOCSER_TEMT) == 0)
        return 1;
#endif
    return 0;
}

std::optional<LineErrors> NativePort::lineErrors() const noexcept {
#ifdef TIOCGICOUNT
    serial_icounter_struct counts = {};
    if (::ioctl(m_handle, TIOCGICOUNT, &counts) == 0) // a pseudo-terminal refuses
        return LineErrors{static_cast<std::uint32_t>(counts.frame), static_cast<std::uint32_t>(counts.parity),
                          static_cast<std::uint32_t>(counts.overrun) +
                              static_cast<std::uint32_t>(counts.buf_overrun)};
#endif
    return {};
}

} // namespace zrk
