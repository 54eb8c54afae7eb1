#include "PortFixture.h"

#include <cstdarg>
#include <sys/ioctl.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace {

/// What is done to the modem lines of a pseudo-terminal, which has none, as long as this lives.
struct ModemLines {
    ModemLines() { watching = this; }
    ~ModemLines() { watching = nullptr; }
    ModemLines(const ModemLines&) = delete;
    ModemLines& operator=(const ModemLines&) = delete;

    std::string changes; ///< "+" for DTR on, "-" for off, in order

    static inline ModemLines* watching = nullptr;
};

} // namespace

// Stands in front of the system's; the program under test is linked to this one.
extern "C" int ioctl(int descriptor, unsigned long request, ...) noexcept {
    std::va_list arguments;
    va_start(arguments, request);
    void* argument = va_arg(arguments, void*);
    va_end(arguments);
    const bool modem = request == TIOCMBIS || request == TIOCMBIC;
    if (modem && ModemLines::watching != nullptr && *static_cast<int*>(argument) == TIOCM_DTR) {
        ModemLines::watching->changes += request == TIOCMBIS ? '+' : '-';
        return 0;
    }
    return static_cast<int>(::syscall(SYS_ioctl, descriptor, request, argument));
}

namespace zrk::test {
namespace {

class ModemLine : public PortFixture {};

TEST_F(ModemLine, DtrIsSetAnewWithTheFlowControlAndLeftAloneOtherwise) {
    ModemLines lines;
    openPort();
    port->setHandshaking(Handshaking::XonXoff);
    EXPECT_EQ(lines.changes, "") << "nobody has asked for it yet";
    EXPECT_TRUE(port->setDtr(false));
    port->setHandshaking(Handshaking::None);
    EXPECT_TRUE(port->setDtr(true));
    port->setHandshaking(Handshaking::XonXoff);
    EXPECT_EQ(lines.changes, "--++");
    port.reset();
    EXPECT_EQ(lines.changes, "--++") << "closing must not reset a board that hangs on it";
}

} // namespace
} // namespace zrk::test
