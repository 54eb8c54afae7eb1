#include "PortFixture.h"

#include <cstdarg>
#include <sys/ioctl.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace {

/// The changes of DTR, "+" for on, "-" for off, and of RTS, "rts+": a pseudo-terminal has no modem lines.
std::string dtrChanges;
bool watched = false;

} // namespace

// Replaces the system's function: the program under test is linked to this one.
extern "C" int ioctl(int descriptor, unsigned long request, ...) noexcept {
    std::va_list arguments;
    va_start(arguments, request);
    void* argument = va_arg(arguments, void*);
    va_end(arguments);
    const bool modem = request == TIOCMBIS || request == TIOCMBIC;
    if (modem && watched) {
        dtrChanges += *static_cast<int*>(argument) == TIOCM_DTR ? "" : "rts";
        dtrChanges += request == TIOCMBIS ? '+' : '-';
        return 0;
    }
    return static_cast<int>(::syscall(SYS_ioctl, descriptor, request, argument));
}

namespace zrk::test {
namespace {

TEST_F(PortFixture, DtrIsSetAgainWithTheFlowControlAndLeftAloneOtherwise) {
    watched = true;
    openPort();
    port->setHandshaking(Handshaking::XonXoff);
    EXPECT_EQ(dtrChanges, "") << "not requested yet";
    EXPECT_TRUE(port->setDtr(false));
    port->setHandshaking(Handshaking::None);
    EXPECT_TRUE(port->setDtr(true));
    port->setHandshaking(Handshaking::XonXoff);
    EXPECT_EQ(dtrChanges, "--++");
    port.reset();
    EXPECT_EQ(dtrChanges, "--++") << "closing must not reset a board that hangs on it";
    watched = false;
}

TEST_F(PortFixture, LinesAreHeldFromTheOpeningOn) {
    watched = true;
    dtrChanges.clear();
    MachinePorts holding(loop, PortNames({{1, line.device()}}), {.dtr = true, .rts = false});
    const auto held = holding.open(1, kLine, Handshaking::None);
    EXPECT_EQ(dtrChanges, "+rts-");
    watched = false;
}

} // namespace
} // namespace zrk::test
