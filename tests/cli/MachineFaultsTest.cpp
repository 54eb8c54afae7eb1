#include "cli/Processes.h"
#include "machine/Pty.h"

#include <QFile>

#include <gtest/gtest.h>

#include <csignal>
#include <sys/stat.h>

namespace {

/// The command line, started by a shell that has changed its streams or environment.
struct MachineFaults : ::testing::Test {
    [[nodiscard]] static QString program() {
        return QString::fromStdString(zrkboard::siblingProgram("zrk-loader-cli"));
    }
    [[nodiscard]] QString load(const BoardProcess& board) const {
        return program() + " " +
               images.on(board.device(), "--line-rate 0 load start expect 'zrk>' --start-timeout 600");
    }
    const SampleImages images;
};

/// The port must not replace a missing stream, whose number would be the next free one.
TEST_F(MachineFaults, OfStreamsAndEnvironmentSpoilNoBoard) {
    // TSAN_OPTIONS names faults of Qt, not of ours.
    const struct {
        const char* how; // "@" is the command
        int status;
        const char* error; // on the rest of standard error
    } faults[] = {
        {"@ <&-", 0, "Port: COM1"},
        {"@ >&-", 1, "its text is incomplete"},
        {"@ 2>&-", 0, ""},
        {"@ <&- >&- 2>&-", 1, ""},
        {"@ >/dev/full", 1, "could not be written: No space left on device; its text is incomplete"},
        {"@ 2>/dev/full", 0, ""},
        {"@ | true", 1, "its text is incomplete"},
        {R"(env -i ${TSAN_OPTIONS:+TSAN_OPTIONS="$TSAN_OPTIONS"} @)", 0, "Port: COM1"},
        {"cd / && HOME=/nonexistent TMPDIR=/nonexistent @", 0, "Port: COM1"},
        {"umask 777; @ --trace t", 0, "Port: COM1"},
        {"ulimit -f 0; @ --report r", 1,
         "--report r: The record of this board is missing: File too large.\n"},
        {"ulimit -f 1; @ --trace t", 0, "The trace t cannot be written: File too large."},
        {"ulimit -f 1; @ --log l", 0, ".log ends here: File too large. The run goes on."},
    };
    for (const auto& fault : faults) {
        SCOPED_TRACE(fault.how);
        const QString sdram = images.file("sdram.dump");
        BoardProcess board("--unpaced --verbose --bootid-interval 5 --dump-sdram " + sdram);
        QProcess shell;
        shell.setWorkingDirectory(images.file("."));
        shell.start("bash", {"-c", "set -o pipefail; " + QString(fault.how).replace('@', load(board))});
        ASSERT_TRUE(shell.waitForFinished(600'000));
        EXPECT_EQ(shell.exitCode(), fault.status);
        const QByteArray error = shell.readAllStandardError();
        EXPECT_TRUE(error.contains(fault.error)) << error.toStdString();
        EXPECT_TRUE(board.waitForLog("secondary program: started"));
        EXPECT_EQ(board.stop(), 0);
        const QByteArray secondary = contents(images.file("secondary.bin"));
        EXPECT_TRUE(contents(sdram).mid(4, secondary.size()) == secondary);
    }
}

TEST_F(MachineFaults, OfStreamsLeaveTheirNumbersToNoFile) {
    const QString found = images.file("found");
    QFile look(images.file("look"));
    ASSERT_TRUE(look.open(QIODevice::WriteOnly));
    look.write("for i in 0 1 2; do readlink /proc/$PPID/fd/$i; done > " + found.toLocal8Bit());
    look.close();
    const BoardProcess board("--unpaced --bootid-interval 5");
    QProcess shell;
    shell.start("bash", {"-c", program() + " " +
                                   images.on(board.device(), "--line-rate 0 --on-wait '. " + look.fileName() +
                                                                 "' load <&- >&- 2>&-")});
    ASSERT_TRUE(shell.waitForFinished(600'000));
    EXPECT_EQ(contents(found), "/dev/null\n/dev/null\n/dev/null\n");
}

TEST_F(MachineFaults, OfScarceResourcesAreReportedBeforeAnythingIsSent) {
    const struct {
        const char* how; // "@" is the command
        int status;
        int messages;
        const char* error;
    } faults[] = {
        {"ulimit -Sn 60; @", 0, 0, ""},
        {"ulimit -n 60; @", 2, 1, "2 boards need up to 80 open files, and 60 are allowed."},
        {"ulimit -s 1000000000; @", 1, 1, // no room for stacks
         "zrk-loader-cli: Resource temporarily unavailable. Nothing was sent. End other programs"},
    };
    for (const auto& fault : faults) {
        SCOPED_TRACE(fault.how);
        if (QByteArray(fault.how).startsWith("ulimit -s") &&
            contents("/proc/sys/vm/overcommit_memory").startsWith('1'))
            continue; // this machine promises any memory
        zrk::test::Pty first;
        zrk::test::Pty second;
        const QString start = program() + " start --port " + first.device() + " --port " + second.device();
        QProcess shell;
        shell.start("bash", {"-c", QString(fault.how).replace('@', start)});
        ASSERT_TRUE(shell.waitForFinished(600'000));
        const QByteArray error = shell.readAllStandardError();
        EXPECT_EQ(shell.exitCode(), fault.status) << error.toStdString();
        EXPECT_EQ(fault.messages == 0 ? 0 : error.count(fault.error), fault.messages) << error.toStdString();
        EXPECT_EQ(first.hasReceived(), fault.status == 0);
        EXPECT_EQ(second.hasReceived(), fault.status == 0);
    }
}

/// The file is built again while the image before it is sent. The program sleeps meanwhile, as a machine
/// does.
TEST_F(MachineFaults, OfImagesComeTooLate) {
    const QString path = images.file("secondary.bin");
    const QString sdram = images.file("sdram.dump");
    const QByteArray before(2000, 'b');
    const struct {
        const char* trace;
        QByteArray now;      // empty: the file is gone
        bool isPipe = false; // is there instead, and has no writer
    } faults[] = {
        {"grown", before + "grown"}, {"shorter", before.chopped(1)}, {"gone", {}}, {"pipe", {}, true}};
    for (const auto& fault : faults) {
        SCOPED_TRACE(fault.trace);
        const auto write = [&path](const QByteArray& bytes) {
            QFile file(path);
            return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
        };
        ASSERT_TRUE(write(before));
        // So slow that the first image is still under way even on a busy machine.
        BoardProcess board("--verbose --baud 57600 --bootid-interval 5 --dump-sdram " + sdram);
        CliRun run(images.on(board.device(), "load"));
        ASSERT_TRUE(run.waitFor(QProcess::StandardOutput, "Sending code .. "));
        run.send(SIGSTOP);
        ASSERT_TRUE(fault.now.isEmpty() ? QFile::remove(path) : write(fault.now));
        ASSERT_TRUE(!fault.isPipe || mkfifo(qPrintable(path), 0600) == 0);
        run.send(SIGCONT);
        EXPECT_EQ(run.status(), 0) << run.error().toStdString();
        EXPECT_TRUE(
            run.error().contains("(SDRAM): the file has changed since this run began; the board got its"))
            << run.error().toStdString();
        EXPECT_EQ(board.stop(), 0);
        EXPECT_TRUE(contents(sdram).mid(4, before.size()) == before);
        EXPECT_TRUE(QFile::remove(path) || fault.now.isEmpty());
    }
}

/// Names and texts of a configuration must not control the terminal that shows them.
TEST_F(MachineFaults, OfTextsDoNotReachTheTerminal) {
    QFile file(images.file("own.INI"));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("[BINFILES]\nPRIM\x1B]0;title\x07\xC2\x9B\x7F=x\n");
    file.close();
    for (const QString json : {"", "--json "}) {
        QProcess shell; // which makes a terminal of its streams
        shell.start("script",
                    {"-qec", program() + " --ini " + file.fileName() + ' ' + json + "check", "/dev/null"});
        ASSERT_TRUE(shell.waitForFinished(600'000));
        const QByteArray shown = shell.readAllStandardOutput();
        EXPECT_TRUE(shown.contains("PRIM^[]0;title^G\\x9B^?")) << shown.toStdString();
        EXPECT_EQ(shown.contains("PRIM^[]0;title^G\\\\x9B^?"), !json.isEmpty()) << shown.toStdString();
        EXPECT_FALSE(shown.contains("\xC2\x9B") || shown.contains('\x7F'));
    }
}

} // namespace
