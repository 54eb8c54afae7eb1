#include "Bench.h"

#include <gtest/gtest.h>

using namespace std::chrono_literals;
using zrkboard::State;

TEST(BootRom, AnnouncesItselfUntilAnswered) {
    zrkboard::BoardOptions options;
    options.powerOnDelay = 700ms;
    Bench bench(options);
    EXPECT_EQ(bench.wait(699ms), "");
    EXPECT_EQ(bench.wait(1ms), "5");
    EXPECT_EQ(bench.wait(499ms), "");
    EXPECT_EQ(bench.send("4a", 1ms), "5") << "anything but A is ignored";
    EXPECT_EQ(bench.wait(2s), "5555") << "a long wait catches up";
    EXPECT_EQ(bench.send("A", 5s), "5") << "the second BootID, and no more after it";
}

TEST(BootRom, SaysWhenEachByteLeft) {
    Bench bench;
    bench.board.advance(bench.now + 1s);
    const auto pieces = bench.board.takeTimedOutput();
    ASSERT_EQ(pieces.size(), 2U);
    EXPECT_EQ(pieces[0].when - bench.now, 500ms);
    EXPECT_EQ(pieces[1].when - bench.now, 1000ms);
}

TEST(BootRom, DeafBeforeItsFirstAnnouncement) {
    Bench bench;
    EXPECT_EQ(bench.send("A", 500ms), "5");
    EXPECT_EQ(bench.board.state(), State::Announcing);
}

TEST(BootRom, UnlocksAndTakesAnImageIntoIram) {
    Bench bench;
    bench.wait(500ms);
    EXPECT_EQ(bench.send("A"), "5");
    EXPECT_EQ(bench.send("U"), "");
    EXPECT_EQ(bench.send("3"), "R");
    const std::string image = bench.kPrimary + std::string("\0\xFF\x03", 3);
    EXPECT_EQ(bench.send(std::string("\x34\x12\0\0", 4) + Bench::word(image.size()) + image), "")
        << "no acknowledgement";
    EXPECT_EQ(text(bench.board.iram().read(0x1234, image.size())), image);
    EXPECT_EQ(bench.board.codeBytes(), image.size());
    EXPECT_EQ(bench.wait(99ms), "");
    EXPECT_EQ(bench.wait(1ms), "X");
}

TEST(BootRom, FallsSilentForGoodWhenSomethingIsWrong) {
    struct Case {
        const char* what;
        std::string bytes;
        std::string logged;
    };
    const std::string unlocked = "AU3";
    for (const Case& wrong : {
             Case{"first unlock byte", "Au3", "expected 0x55 'U', got 0x75 'u'"},
             Case{"second unlock byte", "AUU", "expected 0x33 '3', got 0x55 'U'"},
             Case{"end beyond IRAM", unlocked + Bench::header(0xFFFF, 2) + "ab", "does not lie in IRAM"},
             Case{"start beyond IRAM", unlocked + Bench::header(0x80000004, 2) + "ab",
                  "does not lie in IRAM"},
             Case{"no marker", unlocked + Bench::header(0, 4) + "code", "marker is missing"},
             Case{"empty image", unlocked + Bench::header(0, 0), "marker is missing"},
         }) {
        SCOPED_TRACE(wrong.what);
        Bench bench;
        bench.wait(500ms);
        bench.send(wrong.bytes);
        EXPECT_TRUE(bench.logged(wrong.logged));
        EXPECT_EQ(bench.board.state(), State::Silent);
        EXPECT_EQ(bench.send("AAFdp", 10s), "");
        bench.board.powerOn(bench.now);
        EXPECT_EQ(bench.wait(500ms), "5");
    }
}

TEST(BootRom, TakesAnImageThatFillsIram) {
    Bench bench;
    bench.unlock();
    std::string image(0x10000, 'z');
    image.replace(0x8000, bench.kPrimary.size(), bench.kPrimary);
    EXPECT_EQ(bench.send(Bench::header(0, image.size()) + image, 1s), "X");
    EXPECT_EQ(text(bench.board.iram().read(0, image.size())), image);
}

TEST(BootRom, ForgetsWhatWasUnderWayAtPowerOn) {
    Bench bench;
    bench.unlock();
    bench.send(Bench::header(0, 100) + "some of it");
    bench.board.powerOn(bench.now);
    EXPECT_EQ(bench.board.codeBytes(), 0U);
    bench.startPrimary();
    EXPECT_EQ(bench.board.state(), State::PrimaryWaiting);
    EXPECT_EQ(bench.board.powerOns(), 2U);
}
