#include "Bench.h"

#include <gtest/gtest.h>

using namespace std::chrono_literals;
using zrkboard::State;

TEST(BootRom, AnnouncesItselfUntilAnswered) {
    zrkboard::BoardOptions options;
    options.powerOnDelay = 700ms;
    Bench bench(options);
    EXPECT_EQ(bench.send("A", 699ms), "") << "deaf before it has announced itself";
    EXPECT_EQ(bench.wait(1ms), "5");
    EXPECT_EQ(bench.wait(499ms), "");
    EXPECT_EQ(bench.send("4a", 1ms), "5") << "anything but A is ignored";
    bench.board.advance(bench.now += 2s);
    const auto pieces = bench.board.takeTimedOutput();
    ASSERT_EQ(pieces.size(), 4U) << "a long wait catches up";
    EXPECT_EQ(bench.now - pieces[0].when, 1500ms) << "and says when each byte left";
    EXPECT_EQ(bench.board.state(), State::Announcing);
    EXPECT_EQ(bench.send("A", 5s), "5") << "the second BootID, and no more after it";
}

TEST(BootRom, UnlocksAndTakesAnImageIntoIram) {
    for (const auto& [address, size] : {std::pair{0x1234U, 40U}, std::pair{0U, 0x10000U}}) {
        Bench bench;
        bench.wait(500ms);
        EXPECT_EQ(bench.send("A"), "5");
        EXPECT_EQ(bench.send("U"), "");
        EXPECT_EQ(bench.send("3"), "R");
        const std::string image = std::string(size - bench.kPrimary.size() - 3, 'z') + bench.kPrimary +
                                  std::string("\0\xFF\x03", 3);
        EXPECT_EQ(bench.send(Bench::header(address, size) + image, 99ms), "") << "no acknowledgement";
        EXPECT_EQ(text(bench.board.iram().read(address, size)), image);
        EXPECT_EQ(bench.board.codeBytes(), size);
        EXPECT_EQ(bench.wait(1ms), "X");
    }
}

TEST(BootRom, FallsSilentUntilPowerOnWhenSomethingIsWrong) {
    struct Case {
        std::string bytes, logged;
    };
    for (const Case& wrong : {
             Case{"Au3", "expected 0x55 'U', got 0x75 'u'"},
             Case{"AUU", "expected 0x33 '3', got 0x55 'U'"},
             Case{"AU3" + Bench::header(0xFFFF, 2) + "ab", "does not lie in IRAM"},
             Case{"AU3" + Bench::header(0x80000004, 2) + "ab", "does not lie in IRAM"},
             Case{"AU3" + Bench::header(0, 4) + "code", "marker is missing"},
             Case{"AU3" + Bench::header(0, 0), "marker is missing"},
         }) {
        SCOPED_TRACE(wrong.bytes);
        Bench bench;
        bench.wait(500ms);
        bench.send(wrong.bytes);
        EXPECT_TRUE(bench.logged(wrong.logged));
        EXPECT_EQ(bench.board.state(), State::Silent);
        EXPECT_EQ(bench.send("AAFdp", 10s), "");
        bench.board.powerOn(bench.now);
        EXPECT_EQ(bench.board.codeBytes(), 0U);
        bench.startPrimary();
        EXPECT_EQ(bench.board.state(), State::PrimaryWaiting);
    }
}
