#include "cli/Processes.h"
#include "machine/Pty.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>

#include <gtest/gtest.h>

#include <csignal>
#include <string_view>
#include <termios.h>

namespace {

using zrk::test::Pty;

constexpr const char* kBoard = "--unpaced --verbose --bootid-interval 5 --patience 0 ";

struct Steps : ::testing::Test {
    [[nodiscard]] QString common(const BoardProcess& board) const {
        return images.on(board.device(), "--line-rate 0 ");
    }
    [[nodiscard]] QString write(const QString& name, const QByteArray& text) const {
        QFile file(images.file(name));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(text);
        return file.fileName();
    }

    const SampleImages images;
};

TEST_F(Steps, DoAllJobsOverOnePortAndLoseNothing) {
    const QString sdram = images.file("sdram.dump");
    BoardProcess board(kBoard + QString("--start-delay 0 --dump-sdram ") + sdram);
    const QString scr = write("smoke.scr", ">help/n\n<help\n");
    CliRun run(common(board) + "load download start expect zrk> script " + scr +
               " expect zrk> verify \"crc32 %a %n\" --start-timeout 600 --expect-timeout 600");
    EXPECT_EQ(run.status(), 0) << run.error().toStdString();
    // Each byte of the program from its first to the text, once, and the script's after it.
    const QByteArray heard = run.output().mid(run.output().indexOf("-- Starting")).replace('\r', "");
    EXPECT_TRUE(heard.startsWith("-- Starting Secondary Executable --\n\n\n"
                                 "ZRK secondary program (simulated board) 1.0\n"
                                 "Type help for a list of commands.\n\nzrk>\n"
                                 "--- Enabling terminal mode ---\n help\nboot "))
        << heard.toStdString();
    EXPECT_TRUE(run.error().contains("Kernel image: the board confirms CRC-32 "))
        << run.error().toStdString();
    EXPECT_EQ(board.stop(), 0);
    const QByteArray kernel = contents(images.file("kernel.img"));
    EXPECT_EQ(contents(sdram).mid(0x800000, kernel.size()), kernel);
}

TEST_F(Steps, DownloadWithoutASecondaryExecutable) {
    const QString own =
        write("own.INI", "[BINFILES]\nPRIMARY=primary.bin\n[IMGFILES]\nUBOOT=u-boot.ubt,0x80100000\n");
    const QString sdram = images.file("sdram.dump");
    for (const char* steps : {"load download", "load check download"}) {
        BoardProcess board(kBoard + QString("--start-delay 0.3 --dump-sdram ") + sdram);
        CliRun run("--port " + board.device() + " --ini " + own + " --line-rate 0 " + steps);
        EXPECT_EQ(run.status(), 0) << run.output().toStdString() << run.error().toStdString();
        EXPECT_EQ(board.stop(), 0);
        const QByteArray uBoot = contents(images.file("u-boot.ubt"));
        EXPECT_EQ(contents(sdram).mid(0x100000, uBoot.size()), uBoot);
    }
}

TEST_F(Steps, EndWithTheStatusAndReportWhatWasExpected) {
    const QString scr = write("wait.scr", "# a remark\n>/n\n<never said\n");
    const struct {
        const char* board;
        QString steps;
        int status;
        const char* error;
    } endings[] = {
        {"", "load start expect \"no such\" --expect-timeout @", 7,
         "--expect-timeout ran out: \"no such\" did not come within @ s. Received last: \""},
        {"", "load start expect \"no such\" --not help --start-timeout 600", 5,
         "\"help\" came before \"no such\". Received last: \""},
        {"", "reset", 3, ") has no DTR to be pulsed."},
        {"", "start --rts off", 3, "): the device cannot switch DTR or RTS."},
        {"", "load start script " + scr + " --script-timeout @", 7,
         "--script-timeout ran out: The script ended at line 3: \"never said\" did not come within @ s. "
         "Received last: \""},
        {"--fault bootid=none", "start expect zrk --start-timeout @", 4,
         "--start-timeout ran out: The board"},
        {"--bootid-interval 0.1", "start expect zrk --start-timeout 600", 5,
         "it is in its boot ROM. Load the program"},
        {"--fault ack-data=none", "flash --flash-timeout @", 4,
         "--flash-timeout ran out: No answer within @ s. The board programs"},
        {"--fault bootid=none", "load --timeout @", 4, "longer than --timeout @. It was at: "},
        {"", "load --wait-port @ --port /nonexistent", 3, "--wait-port @ ran out"},
        {"", "load --wait-port 10m --timeout @s --port /nonexistent", 4,
         "longer than --timeout @. It was at"},
        {"", "load start expect zrk> verify \"md %a %n\"", 5, "the board does not confirm CRC-32 "},
        {"--fault R=wrong:0x00", "load", 5, "Expected 'R' (0x52), got 0x00. Cycle the power and start over"},
        {"--bootid-interval 0.1", "download --kernel " + images.file("kernel.img") + ",0x80800000", 5,
         "Expected 'o' (0x6F), got '5' (0x35). The board announces its BootID (\"5\"): it waits in its boot "
         "ROM"},
        {"--bootid-interval 0.1", "expect login: --expect-timeout @", 7,
         "The board announces its BootID (\"5\"): it"},
        {"--fault bootid=none --power-on-delay # --noise U-Boot\\x20banner", "load --wait @", 4,
         "service jumper, then"},
        {"--fault bootid=none", "load --wait @", 4, "Nothing was received from COM1 (/"},
    };
    for (const auto& ending : endings) {
        SCOPED_TRACE(ending.steps.toStdString());
        const bool ownPort = ending.steps.contains("--port");
        // A busy machine needs longer until the expected output before the limit has come.
        for (const auto& [limit, half] :
             {std::pair{"0.3", "0.15"}, {"1.5", "0.75"}, {"6", "3"}, {"60", "30"}}) {
            const BoardProcess board(kBoard + QString(ending.board).replace('#', half));
            CliRun run((ownPort ? "--ini " + images.ini() + " " : common(board)) +
                       QString(ending.steps).replace('@', limit));
            const int status = run.status();
            const bool isTold = run.error().contains(QByteArray(ending.error).replace("@", limit));
            if (!isTold && ending.steps.contains('@') && limit != std::string_view("60"))
                continue;
            EXPECT_EQ(status, ending.status);
            EXPECT_TRUE(isTold) << run.error().toStdString();
            break;
        }
    }
}

TEST_F(Steps, DryRunChecksAndSendsNothing) {
    const BoardProcess board(kBoard + QString("--bootid-interval 0.1"));
    CliRun user("--port " + board.device() + " --json expect never");
    ASSERT_TRUE(user.waitFor(QProcess::StandardOutput, "\"board\""));
    const BoardProcess shared(kBoard + QString("--bootid-interval 5"));
    QProcess reader; // takes no lock
    reader.setStandardInputFile(shared.device());
    reader.start("sleep", {"infinity"});
    ASSERT_TRUE(reader.waitForStarted());
    Pty line; // opened last: a program that has a terminal's other end counts as a board, not as a user
    ASSERT_TRUE(QFile::link(images.file("flash.bin"), images.file("link\nSteps: none")));
    const QString real = QFileInfo(images.file("flash.bin")).canonicalFilePath();
    const QString here = "-n --port " + line.device() + " --ini " + images.ini() + " ";
    const struct {
        QString arguments;
        int status;
        QString output;
        const char* error = "";
    } runs[] = {
        {here + "flash --flash \"" + images.file("link\nSteps: none") + '"', 0,
         "link^JSteps: none (the real file is " + real + ") to NAND flash"},
        {here + "load download start", 0, "Addresses: in range, no images overlap\nNothing was sent.\n"},
        {here + "flash", 0, "flash.bin to NAND flash address 0x00000000"},
        {here + "load download --without rootfs --without uboot", 0,
         "secondary.bin to SDRAM address 0x80000004\nKernel image: "},
        {here + "load download --kernel " + images.file("kernel.img") + ",0x80000100", 2, "Addresses: wrong"},
        {"-n --port /nonexistent --ini " + images.ini() + " load", 3, "Port: "},
        {"-n --port " + images.ini() + " --ini " + images.ini() + " load", 3,
         "INI): it is not a serial port. Choose"},
        {"-n --port /dev/null --ini " + images.ini() + " load", 3,
         "COM1 (/dev/null): it is not a serial port. "},
        {"-n --port " + board.device() + " --ini " + images.ini() + " load", 3,
         ": the device is in use by zrk-loader-cli ("},
        {"-n --port " + shared.device() + " --ini " + images.ini() + " load", 0, "there and permitted",
         ") is also in use by sleep ("},
        {here + "--primary " + images.file("primary.bin") + ",0xD001 load", 2, "",
         "12288 bytes from IRAM address 0xD001 on end past the last one, 0xFFFF."},
        {here + "--primary " + images.file("primary.bin") + ",0xD000 load", 0, "IRAM address 0xD000\n"},
        {here + "--log /dev/null/x load", 2, "", "--log /dev/null/x: the folder cannot be made."},
        {here + "--trace /dev/null load", 2, "",
         "--trace: The trace /dev/null cannot be written: it is not a regular"},
        {here + "--report /nonexistent/r load", 2, "",
         "--report: The report /nonexistent/r cannot be written: No"},
        {here + "--trace /nonexistent/t load", 2, "", "cannot be written: No such file or directory."},
        {"-n --port " + images.file(".") + " --ini " + images.ini() + " load", 3, "it is not a serial port."},
    };
    for (const auto& dry : runs) {
        SCOPED_TRACE(dry.arguments.toStdString());
        CliRun run(dry.arguments);
        EXPECT_EQ(run.status(), dry.status) << run.error().toStdString();
        EXPECT_TRUE(run.output().contains(dry.output.toLocal8Bit())) << run.output().toStdString();
        EXPECT_TRUE(run.error().contains(dry.error)) << run.error().toStdString();
        EXPECT_TRUE(dry.status == 0 || !run.error().isEmpty());
    }
    user.send(SIGINT);
    EXPECT_EQ(user.status(), 130);
    EXPECT_FALSE(line.hasReceived());
    reader.kill();
    reader.waitForFinished(-1);
}

TEST_F(Steps, RefuseBadUseBeforeAnythingIsSent) {
    Pty line;
    const QString own = write("own.INI", "[BINFILES]\nPRIMARY=primary.bin\n[IMGFILES]\nUBOOT=none.ubt\n");
    const QString tooLong = write("long.scr", QByteArray(1024 * 1024 + 1, '#'));
    const QString ini = "--ini " + images.ini() + " ";
    const QString kernel = "--kernel " + images.file("kernel.img") + " ";
    const QString other = images.file("other"); // another name of the device
    ASSERT_TRUE(QFile::link(line.device(), other));
    ASSERT_TRUE(QFile::link(images.file("primary.bin"), images.file("link")));
    const struct {
        QString arguments;
        const char* error;
    } lines[] = {
        {"script " + tooLong, "long.scr: it has more than 1 MiB."},
        {"expect", "expect: missing argument TEXT"},
        {"--ini " + images.ini() + " load verify crc32", "with %a for the address"},
        {"--ini " + images.ini() + " verify \"crc32 %a %n\" load start", "here they send nothing"},
        {"--ini " + images.ini() + " load verify \"crc32 %a %n\" start", "no step before it starts one"},
        {"script /nonexistent.scr", "script /nonexistent.scr: no such file or directory."},
        {"--timeout 0 load", "--timeout 0: give the time in seconds, or as in 90s"},
        {"--on-wait \" \" load", "--on-wait needs a command, but it is blank"},
        {"--on-wait-timeout 5 load", "--on-wait-timeout has no effect: it is for the command of --on-wait."},
        {"--json terminal", "leave out --json, and give one board only"},
        {"--progress some load", "--progress some: expected auto, always or never"},
        {"--port " + line.device() + " load", "is given twice"},
        {"--port a=/dev/null --port A=/dev/zero load", "--port A=/dev/zero: another board has that label"},
        {"--port " + other + " load", "/other is the device of --port /dev/"},
        {"download", "Nothing to download: name an image with --uboot"},
        {"--ini " + own + " load download", "none.ubt, which"},
        {"--ini " + images.ini() + " --log /dev/null/x load", "--log /dev/null/x: the folder cannot be made"},
        {ini + "--erase load", "--erase has no effect: it is for flash."},
        {ini + "--expect-timeout 5 load", "--expect-timeout has no effect: it is for expect or verify."},
        {ini + kernel + "load start", "--kernel has no effect: it is for download or check."},
        {ini + "--trace t check", "--trace has no effect: it is for a step that uses the port."},
        {ini + "--trace " + images.ini() + " load",
         "cannot be written: the loader reads that file. Choose another file."},
        {ini + "--trace " + images.file("link") + " load", "cannot be written: it is a link."},
        {ini + "--report " + images.ini() + " load", "cannot be written: this run reads that file."},
        {ini + "--report /dev/null load",
         "The report /dev/null cannot be written: it is not a regular file."},
        {ini + "--report r --tag a load", "--tag a: give KEY=VALUE."},
        {ini + "--tag a=b load", "--tag has no effect without --report."},
        {ini + "--repeat start load", "--repeat needs load or flash as the first step on the port"},
        {ini + "--repeat load start expect x",
         "--repeat with the step expect needs --expect-timeout or --timeout"},
        {ini + "--com 1=/dev/null load", "--com 1=/dev/null has no effect: --port names the device."},
        {ini + kernel + "--without kernel download", "--without kernel contradicts --kernel."},
        {ini + "--without krnl load", "--without krnl: the images are primary, secondary, "},
        {"--ini " + own + " --without kernel load", "--without kernel has no effect: "},
        {"ports start", "The step ports stands alone."},
        {"--timeout 5d start", "--timeout 5d: give the time in seconds"},
        {"reset --dtr on", "The step reset switches DTR off and on, which --dtr holds."},
        {"start --rts of", "--rts of: expected on or off."},
        {"expect a --not=", "--not needs a text"},
        {ini + "--without primary --without secondary load", "name one with --primary FILE"},
    };
    for (const auto& bad : lines) {
        SCOPED_TRACE(bad.arguments.toStdString());
        CliRun run("--port " + line.device() + " " + bad.arguments);
        EXPECT_EQ(run.status(), 2);
        EXPECT_TRUE(run.error().contains(bad.error)) << run.error().toStdString();
    }
    EXPECT_FALSE(line.hasReceived());
}

TEST_F(Steps, TerminalPassesAPipeAndATerminalThrough) {
    BoardProcess board(kBoard);
    CliRun bringUp(common(board) + "load start expect zrk> --start-timeout 600");
    ASSERT_EQ(bringUp.status(), 0) << bringUp.error().toStdString();
    CliRun closed(common(board) + "terminal", {.input = write("keys", "help\r"), .output = "/dev/full"});
    EXPECT_EQ(closed.status(), 1);
    CliRun pipe(common(board) + "terminal", {.input = write("keys", "help\r")});
    EXPECT_EQ(pipe.status(), 0);
    EXPECT_TRUE(pipe.output().startsWith("help\r\n") && pipe.output().contains("\r\nzrk> "))
        << pipe.output().toStdString();
    EXPECT_TRUE(pipe.error().contains("ends after the end of the input"));

    Pty person;
    termios cooked = person.settings();
    cooked.c_lflag |= static_cast<tcflag_t>(ICANON | ECHO | ISIG);
    person.setSettings(cooked);
    const tcflag_t before = person.settings().c_lflag;
    CliRun typed(common(board) + "terminal", {.input = person.device()});
    ASSERT_TRUE(typed.waitFor(QProcess::StandardError, "Ctrl-] ends it"));
    EXPECT_EQ(person.settings().c_lflag & static_cast<tcflag_t>(ICANON | ECHO | ISIG), 0U);
    person.send("\r");
    ASSERT_TRUE(typed.waitFor(QProcess::StandardOutput, "zrk> "));
    person.send("\x1D");
    EXPECT_EQ(typed.status(), 0);
    EXPECT_EQ(person.settings().c_lflag, before);
}

TEST_F(Steps, ShowTheBoardsControlsOnATerminalOnly) {
    const QString options = kBoard + QString("--off --noise \\x1B[2J5x --bootid-interval 0.1");
    const auto powerOn = [](BoardProcess& board) { // output before the port is open is lost
        EXPECT_TRUE(board.waitForLog("opened by a loader"));
        board.signal(SIGUSR1);
    };
    BoardProcess board(options);
    Pty screen;
    CliRun shown(common(board) + "expect x", {.output = screen.device()});
    powerOn(board);
    EXPECT_EQ(shown.status(), 0) << shown.error().toStdString();
    EXPECT_EQ(screen.receive(7), "^[[2J5x");
    BoardProcess again(options);
    CliRun kept(common(again) + "expect x");
    powerOn(again);
    EXPECT_EQ(kept.status(), 0);
    EXPECT_TRUE(kept.output().startsWith("\x1B[2J5x")) << kept.output().toStdString();
}

TEST_F(Steps, RunSeveralBoardsOfWhichOneFails) {
    const BoardProcess good(kBoard);
    const BoardProcess bad(kBoard + QString("--fault accept=refuse"));
    const QString log = images.file("log");
    const QString started = images.file("started");
    const QString command = "sh " + write("cycle", "echo $ZRK_PORT >> " + started.toLatin1());
    CliRun run("--port left-1=" + bad.device() + " --port " + good.device() + " --ini " + images.ini() +
               " --line-rate 0 --log " + log + " --on-wait \"" + command +
               "\" load start expect zrk> --start-timeout 600");
    EXPECT_EQ(run.status(), 5) << run.error().toStdString();
    const QString names[] = {QFileInfo(good.device()).fileName(), "left-1"};
    for (const QByteArray& line : run.output().trimmed().split('\n'))
        EXPECT_TRUE(line.startsWith(names[0].toLatin1() + ": ") ||
                    line.startsWith(names[1].toLatin1() + ": "))
            << line.toStdString();
    const QString table = run.error();
    EXPECT_TRUE(table.contains(QRegularExpression("\\n" + names[0] + " +status +0 .* done\\n")))
        << run.error().toStdString();
    EXPECT_TRUE(table.contains(QRegularExpression("\\n" + names[1] + " +status +5 .* refused in load\\n")))
        << run.error().toStdString();
    EXPECT_TRUE(contents(log + '/' + names[0] + ".log").contains("Expect final 't' .. t .. found"));
    EXPECT_TRUE(contents(log + '/' + names[1] + ".log").contains("Error signalled back"));
    const QByteArray ports = contents(started);
    EXPECT_TRUE(ports.contains(good.device().toLatin1() + '\n') &&
                ports.contains(bad.device().toLatin1() + '\n'));
}

} // namespace
