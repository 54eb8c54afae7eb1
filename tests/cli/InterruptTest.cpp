#include "cli/Processes.h"
#include "machine/Pty.h"

#include <gtest/gtest.h>

#include <csignal>

namespace {

using zrk::test::Pty;

constexpr const char* kQuestion = "If you cancel now, you have to restart all over!\nAre you sure?";

QString loadStep(const BoardProcess& board, const SampleImages& images) {
    return "--port " + board.device() + " --ini " + images.ini() + " load";
}

/// The text that a terminal has received, as its screen shows it.
class Screen {
  public:
    explicit Screen(Pty& pty) : m_pty(pty) {}

    void readUntil(const QByteArray& text) {
        while (!m_received.contains(text))
            m_received += m_pty.receive(1);
    }

    [[nodiscard]] QStringList lines() {
        while (m_pty.hasReceived())
            m_received += m_pty.receive(1);
        QStringList lines;
        const QList<QByteArray> received = m_received.split('\n');
        for (const QByteArray& raw : received) {
            QByteArray line;
            for (const QByteArray& written : raw.split('\r'))
                line = written + line.mid(written.size());
            lines += QString::fromUtf8(line).trimmed();
        }
        return lines;
    }

  private:
    Pty& m_pty;
    QByteArray m_received;
};

TEST(CliInterrupt, EndsTheWaitForTheBoardAndLeavesNoProgressBehind) {
    const SampleImages images;
    const BoardProcess board("--fault bootid=none");
    Pty person;
    Screen screen(person);
    CliRun run(loadStep(board, images), {person.device(), person.device(), person.device()});
    screen.readUntil("Waiting for BootID .. ");
    screen.readUntil("power-on: ");
    run.send(SIGINT);
    EXPECT_EQ(run.status(), 130);
    const QStringList lines = screen.lines();
    EXPECT_TRUE(lines.contains("Waiting for BootID .. cancelled!") &&
                lines.contains("--- Cancel download, closing port ---") &&
                lines.filter("Cancelled in the step load; ").size() == 1)
        << lines.join('\n').toStdString();
}

/// Sends the signal to the whole process group, as Ctrl-C does. The pipes show when the command has begun,
/// and let it end.
TEST(CliInterrupt, DoesNotReachThePowerSwitch) {
    const SampleImages images;
    const BoardProcess board("--fault bootid=none");
    QFile command(images.file("cycle"));
    ASSERT_TRUE(command.open(QIODevice::WriteOnly));
    command.write("echo off > begun; read -r line < go; echo on > done\n");
    command.close();
    QProcess shell;
    shell.setWorkingDirectory(images.file("."));
    shell.start(
        "bash",
        {"-c", "set -m; mkfifo begun go; exec 3<> go; " +
                   QString::fromStdString(zrkboard::siblingProgram("zrk-loader-cli")) + ' ' +
                   loadStep(board, images) +
                   " --on-wait 'sh cycle' & read -r line < begun; kill -INT -- -$!; echo >&3; wait $!"});
    ASSERT_TRUE(shell.waitForFinished(600'000));
    EXPECT_EQ(shell.exitCode(), 130) << shell.readAllStandardError().toStdString();
    EXPECT_EQ(contents(images.file("done")), "on\n");
}

TEST(CliInterrupt, AsksOnTheTerminalAndAssumesYesWithoutOne) {
    const SampleImages images;
    const struct {
        int signal;
        int status;
        const char* answer; // none: no terminal
        const char* shown;
    } cases[] = {{SIGINT, 0, "n\n", "[y/n]"},
                 {SIGINT, 130, "yes\n", "[y/n]"},
                 {SIGINT, 130, nullptr, "Yes (no terminal to ask on)"},
                 {SIGTERM, 130, "n\n", "Yes (no terminal to ask on)"}};
    for (const auto& oneCase : cases) {
        SCOPED_TRACE(oneCase.shown);
        // Slow, so that the transfer still runs even on a busy machine; fast if it has to reach its end.
        const BoardProcess board(oneCase.status == 0 ? "--baud 115200" : "--baud 9600");
        Pty person;
        CliRun run(loadStep(board, images), {.input = oneCase.answer == nullptr ? "" : person.device()});
        ASSERT_TRUE(run.waitFor(QProcess::StandardOutput, "Sending code .. "));
        run.send(oneCase.signal);
        ASSERT_TRUE(run.waitFor(QProcess::StandardError, kQuestion));
        if (oneCase.answer != nullptr)
            person.send(oneCase.answer);
        EXPECT_EQ(run.status(), oneCase.status) << run.error().toStdString();
        EXPECT_TRUE(run.error().contains(oneCase.shown)) << run.error().toStdString();
    }
}

TEST(CliInterrupt, IsNotAskedAboutWhenALimitEndsATransfer) {
    const SampleImages images;
    const BoardProcess board("--baud 9600");
    CliRun run(loadStep(board, images) + " --timeout 3s");
    EXPECT_EQ(run.status(), 4);
    EXPECT_TRUE(run.error().contains("The run took longer than --timeout 3.")) << run.error().toStdString();
    EXPECT_FALSE(run.error().contains("Are you sure?")) << run.error().toStdString();
}

TEST(CliInterrupt, OutsideAnOperationSendsNothingMore) {
    Pty line;
    CliRun run("--port " + line.device() + " check start", {.signal = SIGINT});
    EXPECT_EQ(run.status(), 130) << run.error().toStdString();
    EXPECT_FALSE(line.hasReceived());
}

TEST(CliEnd, IsNotDoneBeforeTheLastByteHasLeft) {
    Pty line;
    line.stopLine();
    CliRun run("--port " + line.device() + " start");
    EXPECT_EQ(run.status(), 6);
    EXPECT_TRUE(run.error().contains("The last bytes did not leave the port")) << run.error().toStdString();
    EXPECT_FALSE(line.hasReceived());
}

} // namespace
