#include "BoardRig.h"

#include <gtest/gtest.h>

using namespace std::chrono_literals;
using zrkboard::State;

TEST(BootRom, AnnouncesItselfUntilAnswered) {
    zrkboard::BoardOptions options;
    options.powerOnDelay = 700ms;
    BoardRig rig(options);
    EXPECT_EQ(rig.send("A", 699ms), "") << "deaf before it has announced itself";
    EXPECT_EQ(rig.wait(1ms), "5");
    EXPECT_EQ(rig.wait(499ms), "");
    EXPECT_EQ(rig.send("4a", 1ms), "5") << "anything but A is ignored";
    rig.board.advance(rig.now += 2s);
    const auto pieces = rig.board.takeTimedOutput();
    ASSERT_EQ(pieces.size(), 4U) << "a long wait catches up";
    EXPECT_EQ(rig.now - pieces[0].when, 1500ms) << "and says when each byte left";
    EXPECT_EQ(rig.board.state(), State::Announcing);
    EXPECT_EQ(rig.send("A", 5s), "5") << "the second BootID, and no more after it";
}

TEST(BootRom, UnlocksAndTakesAnImageIntoIram) {
    for (const auto& [address, size] : {std::pair{0x1234U, 40U}, std::pair{0U, 0x10000U}}) {
        BoardRig rig;
        rig.wait(500ms);
        EXPECT_EQ(rig.send("A"), "5");
        EXPECT_EQ(rig.send("U"), "");
        EXPECT_EQ(rig.send("3"), "R");
        const std::string image =
            std::string(size - rig.kPrimary.size() - 3, 'z') + rig.kPrimary + std::string("\0\xFF\x03", 3);
        EXPECT_EQ(rig.send(BoardRig::header(address, size) + image, 99ms), "") << "no acknowledgement";
        EXPECT_EQ(text(rig.board.iram().read(address, size)), image);
        EXPECT_EQ(rig.board.codeBytes(), size);
        EXPECT_EQ(rig.wait(1ms), "X");
    }
}

TEST(BootRom, FallsSilentUntilPowerOnWhenSomethingIsWrong) {
    struct Case {
        std::string bytes, logged;
    };
    for (const Case& wrong : {
             Case{"Au3", "expected 0x55 'U', got 0x75 'u'"},
             Case{"AUU", "expected 0x33 '3', got 0x55 'U'"},
             Case{"AU3" + BoardRig::header(0xFFFF, 2) + "ab", "does not lie in IRAM"},
             Case{"AU3" + BoardRig::header(0x80000004, 2) + "ab", "does not lie in IRAM"},
             Case{"AU3" + BoardRig::header(0, 4) + "code", "no marker"},
             Case{"AU3" + BoardRig::header(0, 0), "no marker"},
         }) {
        SCOPED_TRACE(wrong.bytes);
        BoardRig rig;
        rig.wait(500ms);
        rig.send(wrong.bytes);
        EXPECT_TRUE(rig.logged(wrong.logged));
        EXPECT_EQ(rig.board.state(), State::Silent);
        EXPECT_EQ(rig.send("AAFdp", 10s), "");
        rig.board.powerOn(rig.now);
        EXPECT_EQ(rig.board.codeBytes(), 0U);
        rig.startPrimary();
        EXPECT_EQ(rig.board.state(), State::PrimaryWaiting);
    }
}
