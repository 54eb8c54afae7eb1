#include "BoardRig.h"

#include <gtest/gtest.h>

using namespace std::chrono_literals;
using zrkboard::State;

TEST(PrimaryBoot, TakesAnImageOnEachCommand) {
    BoardRig rig;
    rig.startPrimary();
    std::uint64_t address = 0x80000004;
    for (const std::string command : {"p", "u", "r", "k"}) {
        const std::string image = "image of " + command + std::string("\0\xFF", 2);
        EXPECT_EQ(rig.send(command + BoardRig::word(address)), "");
        EXPECT_EQ(rig.send(BoardRig::word(image.size())), "o");
        EXPECT_EQ(rig.board.state(), State::PrimaryLoading);
        EXPECT_EQ(rig.send(image.substr(1)), "");
        EXPECT_EQ(rig.send("!"), "t");
        EXPECT_EQ(text(rig.board.sdram().read(address, image.size())), image.substr(1) + "!");
        EXPECT_EQ(rig.board.state(), State::PrimaryWaiting);
        address += 0x00800000;
    }
}

TEST(PrimaryBoot, RefusesWhatDoesNotLieInSdram) {
    BoardRig rig;
    rig.startPrimary();
    for (const auto& [address, size] :
         std::vector<std::pair<std::uint64_t, std::uint64_t>>{{0x7FFFFFFF, 2},
                                                              {0, 4},
                                                              {0x84000000, 1},
                                                              {0x83FFFFFF, 2},
                                                              {0x80000000, 0x04000001},
                                                              {0xFFFFFFFF, 2},
                                                              {0x80000000, 0xFFFFFFFF}})
        EXPECT_EQ(rig.send("k" + BoardRig::header(address, size)), "E") << std::hex << address;
    EXPECT_EQ(rig.send("k" + BoardRig::header(0x83FFFFFE, 2) + "kk"), "ot");
    EXPECT_EQ(rig.send("k" + BoardRig::header(0x80000000, 1) + "k"), "ot");
    EXPECT_EQ(rig.send("u" + BoardRig::header(0x80000004, 0)), "ot") << "an empty image is complete at once";
}

TEST(PrimaryBoot, StartsTheSecondaryProgramOnlyWhenThereIsOne) {
    BoardRig rig;
    rig.startPrimary();
    rig.send("u" + BoardRig::header(0x80100000, 1) + "u");
    EXPECT_EQ(rig.send("dq\r", 1s), "");
    EXPECT_TRUE(rig.logged("'d' without a secondary program"));
    EXPECT_TRUE(rig.logged("ignored 0x71 'q'") && rig.logged("ignored 0x0D"));
    EXPECT_EQ(rig.send("p" + BoardRig::header(0x80000004, 1) + "p"), "ot");
    EXPECT_EQ(rig.send("d", 99ms), "");
    EXPECT_NE(rig.wait(1ms).find("zrk> "), std::string::npos);
    EXPECT_EQ(rig.board.state(), State::Prompt);
}
