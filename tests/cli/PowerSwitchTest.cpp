#include "cli/Processes.h"

#include <QFile>

#include <gtest/gtest.h>

#include <csignal>
#include <sys/stat.h>

namespace {

/// A board that is on and announces itself, and a command for its power that goes on when the test says so.
struct OnWait : ::testing::Test {
    OnWait() {
        for (const char* name : {"go", "done"})
            EXPECT_EQ(mkfifo(qPrintable(images.file(name)), 0600), 0);
    }
    /// In a shell that does not wait for ever if the command has been ended.
    QByteArray shell(const QString& command) const {
        QProcess process;
        process.setWorkingDirectory(images.file("."));
        process.start("timeout", {"600", "sh", "-c", command});
        EXPECT_TRUE(process.waitForFinished(600'000));
        return process.readAllStandardOutput();
    }
    [[nodiscard]] QString load(const QString& command, const QString& rest = {}) const {
        return images.on(board.device(), "--line-rate 0 --on-wait \"cd '" + images.file(".") + "' && " +
                                             command + "\" load " + rest);
    }

    const SampleImages images;
    BoardProcess board{"--verbose --unpaced --patience 0 --bootid-interval 5"};
};

TEST_F(OnWait, NoBootIdCountsBeforeTheCommandHasEnded) {
    QFile script(images.file("cycle"));
    ASSERT_TRUE(script.open(QIODevice::WriteOnly));
    script.write("#!/bin/sh\nread -r line < go\necho switched $ZRK_PORT\n");
    script.close();
    ASSERT_TRUE(script.setPermissions(QFile::ReadOwner | QFile::ExeOwner));
    CliRun run(load("./cycle", "start expect zrk> -v --start-timeout 600"));
    ASSERT_TRUE(run.waitFor(QProcess::StandardOutput, "Waiting for BootID .. 5"));
    board.signal(SIGUSR1);
    EXPECT_TRUE(board.waitForLog("power switched off by hand"));
    shell("echo > go");
    EXPECT_EQ(run.status(), 0) << run.error().toStdString();
    EXPECT_TRUE(run.output().startsWith("Waiting for BootID .. 55")) << run.output().toStdString();
    EXPECT_TRUE(run.error().contains("\nswitched " + board.device().toLatin1() + '\n'));
}

/// The adapter of such a board vanishes with its power.
TEST_F(OnWait, MayTakeThePortAwayAndBringItBack) {
    const QString link = images.file("link");
    BoardProcess fed(
        "--verbose --unpaced --patience 0 --fault bootid=none --faulty-runs 1 --bootid-interval 5 --link " +
        link);
    CliRun run(images.on(link, "--line-rate 0 --wait-port 600 --start-timeout 600 load start expect zrk>"));
    ASSERT_TRUE(run.waitFor(QProcess::StandardOutput, "Waiting for BootID .. "));
    fed.signal(SIGUSR2);
    EXPECT_EQ(run.status(), 0) << run.error().toStdString();
    EXPECT_TRUE(run.error().contains("Waiting for the port to come back, --wait-port 600 s at most."))
        << run.error().toStdString();
}

/// A board without power has no port either.
TEST_F(OnWait, BringsThePort) {
    const QString link = images.file("link");
    const QString run = images.on(link, "--line-rate 0 --wait-port 10m load --on-wait ");
    CliRun good(run + "\"ln -sf " + board.device() + " '" + link + "'\"");
    EXPECT_EQ(good.status(), 0) << good.error().toStdString();
    ASSERT_TRUE(QFile::remove(link));
    CliRun bad(run + "false --json");
    EXPECT_EQ(bad.status(), 8) << bad.error().toStdString();
    EXPECT_TRUE(bad.output().contains("\"reason\":\"power_not_switched\"")) << bad.output().toStdString();
}

TEST_F(OnWait, ACommandThatFailsEndsTheBoard) {
    const struct {
        const char* command;
        const char* options;
        const char* error;
    } faults[] = {
        {"exit 3", "",
         "exit 3\" ended with status 3.\nNothing was sent to the board. Check the power switch.\n"},
        {"./no-such", "", "./no-such\" ended with status 127: "},
        {"kill $$", "", "kill $$\" was ended by a signal.\n"},
        {"i=0; while [ $i -lt 20000 ]; do echo outlet $i; i=$((i + 1)); done; false", "",
         "outlet 19999\nNothing was sent to the board."},
        {"read -r line < go; echo on; echo on > done", "--on-wait-timeout 0.3",
         "--on-wait-timeout ran out: the command has not ended within 0.3 s. It is left running, "},
    };
    for (const auto& fault : faults) {
        SCOPED_TRACE(fault.command);
        CliRun run(load(fault.command, QString("--json ") + fault.options));
        EXPECT_EQ(run.status(), 8);
        EXPECT_TRUE(run.output().contains("\"reason\":\"power_not_switched\"")) << run.output().toStdString();
        EXPECT_FALSE(run.output().contains("Sending")) << run.output().toStdString();
        EXPECT_TRUE(run.error().contains(fault.error)) << run.error().toStdString();
        EXPECT_LT(run.error().size(), 10'000);
    }
    EXPECT_EQ(shell("echo > go; cat done"), "on\n"); // the last one goes on
}

/// It ignores the request; when all of its processes have gone, the pipe has no writer any more.
TEST_F(OnWait, OnlyASecondInterruptEndsTheCommand) {
    CliRun run(load("trap '' TERM; exec 3> done; sleep 1000 & sleep 1000"));
    QFile writers(images.file("done"));
    ASSERT_TRUE(writers.open(QIODevice::ReadOnly | QIODevice::Unbuffered));
    run.send(SIGINT);
    ASSERT_TRUE(run.waitFor(QProcess::StandardError, "Waiting for the command of --on-wait to end."));
    run.sendUntilItEnds(SIGINT);
    EXPECT_EQ(run.status(), 130);
    EXPECT_TRUE(run.error().contains("The command of --on-wait was ended half-way."))
        << run.error().toStdString();
    EXPECT_TRUE(writers.readAll().isEmpty());
}

/// A service manager repeats it.
TEST_F(OnWait, ARequestToEndLeavesTheCommandAlone) {
    CliRun run(load("sleep 3; echo on > switched"));
    ASSERT_TRUE(run.waitFor(QProcess::StandardOutput, "Waiting for BootID .. "));
    run.sendUntilItEnds(SIGTERM);
    EXPECT_FALSE(run.error().contains("half-way")) << run.error().toStdString();
    EXPECT_EQ(contents(images.file("switched")), "on\n");
}

} // namespace
