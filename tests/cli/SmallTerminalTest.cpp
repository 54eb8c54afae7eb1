#include "cli/Processes.h"
#include "machine/Pty.h"

#include <QFile>

#include <gtest/gtest.h>

#include <csignal>
#include <sys/ioctl.h>

namespace {

/// All that a run prints on its terminal until the text.
QByteArray readUntil(zrk::test::Pty& screen, const QByteArray& text) {
    QByteArray shown;
    while (!shown.endsWith(text))
        shown += screen.receive(1);
    return shown;
}

struct SmallTerminal : ::testing::Test {
    /// A run on three boards that say nothing, on a terminal of 3 rows.
    [[nodiscard]] QString arguments() const {
        return "--port a-long-label-of-a-place=" + one.device() + " --port b=" + other.device() +
               " --port c=" + third.device() + " expect never";
    }
    zrk::test::Pty one;
    zrk::test::Pty other;
    zrk::test::Pty third;
    zrk::test::Pty screen;
};

TEST_F(SmallTerminal, ShowsTheRowsThatHaveRoom) {
    winsize size{};
    size.ws_row = 3;
    size.ws_col = 41;
    ASSERT_EQ(ioctl(screen.deviceDescriptor(), TIOCSWINSZ, &size), 0);
    CliRun run(arguments(), {.output = "/dev/null", .error = screen.device()});
    (void)readUntil(screen, "\n2 more boards");
    const QByteArray redrawn = readUntil(screen, "\n2 more boards");
    EXPECT_EQ(redrawn.count("\x1B[A"), 1) << "no further up than the terminal goes";
    EXPECT_TRUE(redrawn.contains("~l-of-a-place: Waiting for \"never\"")) << redrawn.toStdString();
    run.send(SIGTERM);
    EXPECT_EQ(run.status(), 130);
}

TEST_F(SmallTerminal, ThatCanOnlyAppendGetsNoControls) {
    const QByteArray before = qgetenv("TERM");
    qputenv("TERM", "dumb");
    CliRun run(arguments(), {.output = "/dev/null", .error = screen.device()});
    qputenv("TERM", before);
    (void)readUntil(screen, "c: Port: ");
    run.send(SIGTERM);
    const QByteArray shown = readUntil(screen, "\nc ");
    EXPECT_FALSE(shown.contains('\x1B')) << shown.toStdString();
    EXPECT_TRUE(shown.contains("b: Failed in the step expect after ")) << shown.toStdString();
    EXPECT_EQ(run.status(), 130);
}

} // namespace
