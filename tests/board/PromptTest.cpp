#include "BoardRig.h"

#include <gtest/gtest.h>

using namespace std::chrono_literals;

namespace {

// A board at its prompt.
struct Prompt : BoardRig {
    Prompt() {
        startPrimary();
        send("p" + header(0x80000004, 8) + "SECOND\x01\xFE" + "d", 100ms);
    }

    // Returns the output of a command between its echo and the next prompt.
    std::string run(const std::string& line) {
        const std::string all = send(line + "\r", 1s);
        const std::string head = line + "\r\n";
        const std::string tail = "zrk> ";
        EXPECT_TRUE(all.starts_with(head) && all.ends_with(tail)) << all;
        return all.substr(head.size(), all.size() - head.size() - tail.size());
    }
};

} // namespace

TEST(Prompt, EchoesAndEditsTheLine) {
    Prompt board;
    EXPECT_EQ(board.send("vers"), "vers");
    EXPECT_EQ(board.send("ia\x08\x7F"), "ia\b \b\b \b");
    EXPECT_EQ(board.send("ion\t\x1B"), "ion") << "control characters are neither echoed nor kept";
    EXPECT_EQ(board.send("\r"), "\r\nZRK secondary program (simulated board) 1.0\r\nzrk> ");
    EXPECT_EQ(board.send("\n\r\n\n"), "\r\nzrk> \r\nzrk> ") << "CR LF is one line end";
    EXPECT_EQ(board.send("\x08"), "") << "nothing to erase";
    EXPECT_EQ(board.send("nonsense\x03"), "nonsense^C\r\nzrk> ");
    EXPECT_EQ(board.send("\r"), "\r\nzrk> ");
    EXPECT_EQ(board.send(std::string(300, 'x')), std::string(255, 'x') + std::string(45, '\a'));
}

TEST(Prompt, ShowsMemory) {
    Prompt board;
    EXPECT_EQ(board.run("md 80000004 8"),
              "80000004: 53 45 43 4F 4E 44 01 FE                          SECOND..\r\n");
    EXPECT_EQ(board.run("md 0x80000000 0x12"),
              "80000000: 00 00 00 00 53 45 43 4F 4E 44 01 FE 00 00 00 00  ....SECOND......\r\n"
              "80000010: 00 00                                            ..\r\n");
    EXPECT_EQ(board.run("md 83FFFFF0 16"),
              "83FFFFF0: 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00  ................\r\n");
    for (const std::string line : {"md", "md here", "md 80000000 some", "md 80000000 1 2", "md 80000000 -1"})
        EXPECT_EQ(board.run(line), "usage: md ADDRESS [COUNT], ADDRESS hexadecimal, COUNT decimal or 0x\r\n");
    EXPECT_EQ(board.run("md 83FFFFF0 17"),
              "md: 17 bytes at 0x83FFFFF0 are not in SDRAM (0x80000000 to 0x83FFFFFF)\r\n");
    EXPECT_EQ(board.run("md 0"),
              "md: 64 bytes at 0x00000000 are not in SDRAM (0x80000000 to 0x83FFFFFF)\r\n");
    EXPECT_EQ(board.run("md 80000000 4097"), "md: COUNT is 1 to 4096\r\n");
    EXPECT_EQ(board.run("md 80000000 0"), "md: COUNT is 1 to 4096\r\n");
}

TEST(Prompt, SumsMemory) {
    Prompt board;
    EXPECT_EQ(board.run("crc32 80000004 3"), "crc32 of 3 bytes at 0x80000004 ==> 0xF360E291\r\n");
    EXPECT_EQ(board.run("crc32 0x80000000 0x2000"), "crc32 of 8192 bytes at 0x80000000 ==> 0x0CB8FEC5\r\n");
    EXPECT_EQ(board.run("crc32 83FFFFF0 17"),
              "crc32: 17 bytes at 0x83FFFFF0 are not in SDRAM (0x80000000 to 0x83FFFFFF)\r\n");
    for (const std::string line : {"crc32", "crc32 80000004", "crc32 80000004 some", "crc32 1 2 3"})
        EXPECT_EQ(board.run(line),
                  "usage: crc32 ADDRESS COUNT, ADDRESS hexadecimal, COUNT decimal or 0x\r\n");
}

TEST(Prompt, KeepsVariables) {
    Prompt board;
    EXPECT_EQ(board.run("setenv ipaddr 10.0.0.2"), "");
    EXPECT_EQ(board.run("setenv bootargs  mem=64M   quiet"), "");
    EXPECT_EQ(board.run("printenv bootargs"), "bootargs=mem=64M quiet\r\n");
    EXPECT_EQ(board.run("setenv ipaddr"), "");
    EXPECT_EQ(board.run("printenv ipaddr"), "printenv: 'ipaddr' is not defined\r\n");
    EXPECT_EQ(board.run("printenv"), "baudrate=115200\r\nbootargs=mem=64M quiet\r\nbootdelay=3\r\n");
    EXPECT_EQ(board.run("bogus 1"), "Unknown command 'bogus' - try 'help'\r\n");
}

TEST(Prompt, BootsWhatWasLoaded) {
    Prompt board;
    EXPECT_NE(board.run("boot").find("no kernel was loaded"), std::string::npos);
    board.board.powerOn(board.now);
    board.startPrimary();
    board.send("k" + BoardRig::header(0x80800000, 6) + "kernel");
    board.send("p" + BoardRig::header(0x80000004, 1) + "pd", 1s);
    const std::string log = board.send("boot\r", 2s);
    EXPECT_NE(log.find("0x80800000  kernel, 6 bytes\r\n"), std::string::npos) << log;
    EXPECT_NE(log.find("Starting kernel at 0x80800000"), std::string::npos);
    EXPECT_TRUE(log.ends_with("zrk> "));

    EXPECT_EQ(board.send("reset\r"), "reset\r\n");
    EXPECT_EQ(board.board.powerOns(), 3U);
    EXPECT_EQ(board.wait(500ms), "5");
    board.board.powerOn(board.now);
    board.startPrimary();
    EXPECT_EQ(board.send("d", 1s), "") << "what was loaded before the reset does not count";
}

TEST(Prompt, ChattersAtTheSpeedOfTheLineUntilStopped) {
    Prompt board;
    const std::string lines = board.send("chatter 2\r", 2001ms);
    EXPECT_NEAR(static_cast<double>(lines.size()), 2 * 11520, 2 * 64);
    EXPECT_TRUE(lines.ends_with("zrk> "));

    board.send("chatter 100\r", 1s);
    EXPECT_EQ(board.send("\x03", 1s), "^C\r\nzrk> ");
    EXPECT_EQ(board.send("ver\x13sion\r", 5s), "ver");
    EXPECT_FALSE(board.board.nextDeadline()) << "nothing to wake up for while held";
    EXPECT_EQ(board.send("\x11"), "sion\r\nZRK secondary program (simulated board) 1.0\r\nzrk> ");
}
