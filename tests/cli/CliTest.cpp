#include "cli/Processes.h"
#include "support/Exchanges.h"

#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>

#include <gtest/gtest.h>

namespace {

struct Cli : ::testing::Test {
    const SampleImages images;
};

TEST_F(Cli, BringsUpABoardAndStartsIt) {
    const QString iram = images.file("iram.dump");
    const QString sdram = images.file("sdram.dump");
    BoardProcess board("--unpaced --verbose --bootid-interval 5 --dump-iram " + iram + " --dump-sdram " +
                       sdram);
    CliRun run("--port " + board.device() + " --ini " + images.ini() +
               " --line-rate 0 load start --start-timeout 600");
    EXPECT_EQ(run.status(), 0) << run.error().toStdString();
    EXPECT_EQ(run.output(),
              (zrktest::bringUpTexts().join("") + "\n-- Starting Secondary Executable --\n").toLatin1());
    EXPECT_TRUE(run.error().contains("Cycle power off/on on the ZRK6924 demo board, \n"))
        << run.error().toStdString();
    EXPECT_FALSE(run.error().contains('\r')) << "no control characters where no terminal is";

    EXPECT_TRUE(board.waitForLog("secondary program: started"));
    EXPECT_EQ(board.stop(), 0);
    const QByteArray primary = contents(images.file("primary.bin"));
    const QByteArray secondary = contents(images.file("secondary.bin"));
    EXPECT_EQ(contents(iram).left(primary.size()), primary);
    EXPECT_EQ(contents(sdram).mid(4, secondary.size()), secondary);
}

TEST_F(Cli, ExitStatusShowsTheCause) {
    const struct {
        const char* board;
        const char* steps;
        int status;
        const char* output;
        const char* error;
    } endings[] = {
        {"--fault bootid=none", "--wait 0.3 load", 4, "Waiting for BootID .. cancelled!\n",
         "No BootID within 0.3 s"},
        {"--fault X=none", "load", 4, "--- Cancel download, closing port ---\n",
         "TimeOut: No valid serial response received within  5 second\nAborting operation\n"
         "No answer to the code of Primary Boot (IRAM) within 5 s. Expected 'X' (0x58). Cycle "},
        {"--answer-delay 0.01", "--verbose load", 0, "Expect 'R' .. R .. found!\n", " s: \"R\" after 0."},
        {"--fault accept=refuse", "--quiet load", 5, " .. Error signalled back from primary boot.\n",
         "The board refused the address and size of Secondary Executable (SDRAM): expected 'o', got 'E'. "
         "Check "},
        {"--hang-up-after 3000", "load", 6, "--- Cancel download, closing port ---\n",
         "Error communicating with COM1\nor other download problem\nError: COM1 ("},
        {"--fault ack-data=wrong@7", "flash", 5, "get ACK .. \n--- Cancel download, closing port ---\n",
         "The flash contents are in an unknown state"},
        {"--version-length 40000", "flash", 5, "Reading VERSION INFORMATION frame .. ", "40000"},
        {"--erase-time 0.1", "flash --erase", 0, "frame .. (ERASING FLASH) .. get ACK .. done!\n", ""},
        {"", "check load start", 0, "0x80000000)\n1      0x00000004  0xA000      Secondary Executable\n", ""},
    };
    for (const auto& ending : endings) {
        SCOPED_TRACE(std::string(ending.board) + " / " + ending.steps);
        // On a busy machine, a repeated BootID would answer for the next one.
        const BoardProcess board(ending.board + QString(" --unpaced --bootid-interval 5"));
        CliRun run("--port " + board.device() + " --ini " + images.ini() + " --line-rate 0 " + ending.steps);
        EXPECT_EQ(run.status(), ending.status);
        EXPECT_TRUE(run.output().contains(ending.output)) << run.output().toStdString();
        EXPECT_TRUE(run.error().contains(ending.error)) << run.error().toStdString();
    }
}

TEST_F(Cli, RefusesWhatCannotWorkBeforeAnythingIsSent) {
    const QString primary = images.file("primary.bin");
    const QString comma = images.file("a,b");
    const QString empty = images.file("empty");
    ASSERT_TRUE(QFile::copy(primary, comma) && QFile(empty).open(QIODevice::WriteOnly));
    const struct {
        QString arguments;
        int status;
        const char* error;
    } lines[] = {
        {"", 2, "No step given"},
        {"fly", 2, "Unknown step \"fly\""},
        {"--speed 9 load", 2, "speed"},
        {"--com 9 load", 2, "--com 9: the port number goes from 1 to 8"},
        {"--com 2=/dev/null --port /dev/null load", 2, "--port names the device of COM1"},
        {"--com 1=/dev/null --com 2=/dev/null load", 2,
         "--com is given 2 times, but the steps use one port."},
        {"--wait soon load", 2, "--wait soon"},
        {"--line-rate 200000000 load", 2, "--line-rate 200000000: "},
        {"--line-rate fast load", 2, "--line-rate fast: give the bytes a second"},
        {"--ini /nonexistent.INI load", 2, "--ini /nonexistent.INI: no such file or directory."},
        {"--primary= load", 2, "--primary needs a file name, but it is empty"},
        {"--primary /nonexistent load", 2, "--primary /nonexistent: no such file or directory."},
        {"--primary /dev,0x10 load", 2, "--primary /dev: it is a folder."},
        {"--primary " + empty + " load", 2, "empty: it is empty."},
        {"--primary " + comma + " load --port /nonexistent", 3, "a,b to IRAM address 0x0000"},
        {"--primary " + comma + ",0x10 load --port /nonexistent", 3, "a,b to IRAM address 0x0010"},
        {"--primary " + primary + ",0xZZ load", 2, "--primary: the address cannot be read"},
        {"--pg-sibl " + primary + ",0x12345 flash", 2, "--pg-sibl: 0x12345 does not fit into the IRAM"},
        {"load", 2, "name one with --primary FILE"},
        {"--primary " + primary + " load start", 2, "name one with --secondary FILE"},
        {"--flash " + primary + " flash", 2, "name one with --pg-sibl FILE"},
        {"--secondary " + primary + ",0x10 check", 2, "It must be between 0x80000004 and 0x83FFFFF0"},
        {"--secondary " + primary + ",0x81FFFFFC flash check", 2, "--pg-sibl"},
        {"--port /nonexistent --primary " + primary + " load", 3, "(/nonexistent): no such device"},
    };
    for (const auto& line : lines) {
        SCOPED_TRACE(line.arguments.toStdString());
        CliRun run(line.arguments);
        EXPECT_EQ(run.status(), line.status);
        EXPECT_TRUE(run.error().contains(line.error)) << run.error().toStdString();
    }
}

/// An INI file with faults; the port that the steps need does not exist, so a run that begins to send ends
/// with 3.
TEST_F(Cli, PrintsWhatItWillSendAndStopsAtAWrongAddress) {
    const QString ini = images.file("own.INI");
    const QByteArray cut =
        "[BINFILES]|PG_SIBL=pg_sibl.bin|FLASH=" + QByteArray("./").repeated(120) + "flash.bin,0x00100000";
    const struct {
        const char* values; // lines of the file
        const char* steps;
        int status;
        const char* remark;    // on standard error, after the file's name
        const char* announced; // "~" is the folder of the images
    } runs[] = {
        {"[BINFILES]|PRIMARY=primary.bin,0x100|SECONDARY=secondary.bin,0x80000004|FLASH=flash.bin,0X100000|"
         "[IMGFILES]|KERNEL=secondary.bin,none",
         "load", 3, "FLASH: the address cannot be read. Type mismatch: \"0X100000\"",
         "Port: COM1 (/nonexistent)\n"
         "Primary Boot: 12288 bytes (0x3000), about 2 s on the line at 115200 baud, ~/primary.bin to IRAM "
         "address 0x0100\n"
         "Secondary Executable: 40960 bytes (0xA000), about 4 s on the line at 115200 baud, ~/secondary.bin "
         "to SDRAM address 0x80000004"},
        {"[BINFILES]|PRIMARY=primary.bin|PG_SIBL=pg_sibl.bin|FLASH=flash.bin,0x100000|PRIMRY=x",
         "--erase flash", 3,
         "Line 5: unknown key PRIMRY in [BINFILES]; known are PRIMARY, SECONDARY, FLASH, PG_SIBL.",
         "Port: COM1 (/nonexistent)\n"
         "pg_sibl: 8192 bytes (0x2000), about 1 s on the line at 115200 baud, ~/pg_sibl.bin to IRAM address "
         "0x0000\n"
         "Flash image: 65536 bytes (0x10000), about 6 s on the line at 115200 baud, ~/flash.bin to NAND "
         "flash address 0x00100000, after an erase of the whole flash"},
        {"[BINFILES]|PG_SIBL=pg_sibl.bin|FLASH=flash.bin,0X100000", "flash", 2, "FLASH: the address", ""},
        {"[BINFILES]|PG_SIBL=pg_sibl.bin,0x10000|FLASH=flash.bin", "flash", 2, "PG_SIBL: 0x10000 does not",
         ""},
        {"[BINFILES]|PRIMARY=primary.bin,0x12345", "load", 2, "PRIMARY: 0x12345 does not fit into the IRAM",
         ""},
        {cut.constData(), "flash", 2, "FLASH: the value is too long and is cut after 254 characters.", ""},
        {"[IMGFILES]|KERNEL=secondary.bin,none", "check", 2, "KERNEL: the address cannot be read", ""},
    };
    for (const auto& oneRun : runs) {
        SCOPED_TRACE(oneRun.values);
        QFile file(ini);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(QByteArray(oneRun.values).replace('|', '\n'));
        file.close();
        CliRun run("--port /nonexistent --ini " + ini + " " + oneRun.steps);
        EXPECT_EQ(run.status(), oneRun.status);
        const QString error = QString::fromLocal8Bit(run.error()).replace(QFileInfo(ini).path(), "~");
        EXPECT_TRUE(error.contains(QStringLiteral("~/own.INI: ") + oneRun.remark)) << error.toStdString();
        const QStringList announced = error.split('\n').filter(QRegularExpression("^Port|on the line"));
        EXPECT_EQ(announced.join('\n').toStdString(), oneRun.announced);
    }
}

TEST_F(Cli, ReportsThatItsOutputWasLost) {
    CliRun check("check --ini " + images.ini(), {.output = "/dev/full"});
    EXPECT_EQ(check.status(), 1);
    EXPECT_TRUE(check.error().contains("its text is incomplete"));
}

TEST_F(Cli, PrintsItsUsageAndVersion) {
    for (const char* page : {"--help", "--help all"}) {
        CliRun help(page);
        EXPECT_EQ(help.status(), 0);
        const QList<QByteArray> lines = help.output().trimmed().split('\n');
        for (const QByteArray& line : lines)
            EXPECT_LE(line.size(), 80) << line.toStdString();
        const bool isAll = help.output().contains("--pg-sibl FILE[,ADDR]");
        EXPECT_EQ(isAll, QByteArray(page).endsWith("all")) << help.output().toStdString();
        EXPECT_TRUE(isAll || lines.size() < 24) << lines.size(); // the prompt has the last line
    }
    CliRun version("--version");
    EXPECT_EQ(version.status(), 0);
    EXPECT_EQ(version.output(), "zrk-loader-cli 0.7.34\n");
}

} // namespace
