#include "Bench.h"

#include <gtest/gtest.h>

using namespace std::chrono_literals;
using zrkboard::State;

TEST(PrimaryBoot, TakesAnImageOnEachCommand) {
    Bench bench;
    bench.startPrimary();
    std::uint64_t address = 0x80000004;
    for (const std::string command : {"p", "u", "r", "k"}) {
        const std::string image = "image of " + command + std::string("\0\xFF", 2);
        EXPECT_EQ(bench.send(command + Bench::word(address)), "");
        EXPECT_EQ(bench.send(Bench::word(image.size())), "o");
        EXPECT_EQ(bench.board.state(), State::PrimaryLoading);
        EXPECT_EQ(bench.send(image.substr(1)), "");
        EXPECT_EQ(bench.send("!"), "t");
        EXPECT_EQ(text(bench.board.sdram().read(address, image.size())), image.substr(1) + "!");
        EXPECT_EQ(bench.board.state(), State::PrimaryWaiting);
        address += 0x00800000;
    }
}

TEST(PrimaryBoot, RefusesWhatDoesNotLieInSdram) {
    Bench bench;
    bench.startPrimary();
    for (const auto& [address, size] :
         std::vector<std::pair<std::uint64_t, std::uint64_t>>{{0x7FFFFFFF, 2},
                                                              {0, 4},
                                                              {0x84000000, 1},
                                                              {0x83FFFFFF, 2},
                                                              {0x80000000, 0x04000001},
                                                              {0xFFFFFFFF, 2},
                                                              {0x80000000, 0xFFFFFFFF}})
        EXPECT_EQ(bench.send("k" + Bench::header(address, size)), "E") << std::hex << address;
    EXPECT_EQ(bench.send("k" + Bench::header(0x83FFFFFE, 2) + "kk"), "ot");
    EXPECT_EQ(bench.send("k" + Bench::header(0x80000000, 1) + "k"), "ot");
    EXPECT_EQ(bench.send("u" + Bench::header(0x80000004, 0)), "ot") << "an empty image is complete at once";
}

TEST(PrimaryBoot, StartsTheSecondaryProgramOnlyWhenThereIsOne) {
    Bench bench;
    bench.startPrimary();
    bench.send("u" + Bench::header(0x80100000, 1) + "u");
    EXPECT_EQ(bench.send("dq\r", 1s), "");
    EXPECT_TRUE(bench.logged("'d' without a secondary program"));
    EXPECT_TRUE(bench.logged("ignored 0x71 'q'") && bench.logged("ignored 0x0D"));
    EXPECT_EQ(bench.send("p" + Bench::header(0x80000004, 1) + "p"), "ot");
    EXPECT_EQ(bench.send("d", 99ms), "");
    EXPECT_NE(bench.wait(1ms).find("zrk> "), std::string::npos);
    EXPECT_EQ(bench.board.state(), State::Prompt);
}
