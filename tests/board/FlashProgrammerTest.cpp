#include "BoardRig.h"

#include <gtest/gtest.h>

using namespace std::chrono_literals;
using zrkboard::State;

namespace {

std::string bytes(std::initializer_list<int> values) {
    return {values.begin(), values.end()};
}

const std::string kVersionRequest = bytes({0x02, 0x0A, 0, 0, 0, 0xA6, 0xA6, 0, 0, 0x03});
const std::string kEndOfData = bytes({0x02, 0x0C, 0, 0, 0, 0xA3, 0xA3, 0, 0, 0, 0, 0x03});
const std::string kComplete = bytes({0x02, 0x0A, 0, 0, 0, 0xB1, 0xB1, 0, 0, 0x03});
const std::string kAck = bytes({0x02, 0x0A, 0, 0, 0, 0x06, 0x06, 0x17, 0, 0x03});

std::string headerFrame(std::uint64_t address, std::uint64_t size, int erase) {
    return bytes({0x02, 0x18, 0, 0, 0, 0xAE}) + BoardRig::word(address) + BoardRig::word(size) +
           bytes({0x03, 0, 0, 0, 0x01, 0, erase, 0, 0, 0x03});
}

std::string dataFrame(const std::string& image) {
    return "\x02" + BoardRig::word(image.size() + 9) + "\xAF" + image + bytes({0, 0, 0x03});
}

struct Flash : BoardRig {
    explicit Flash(zrkboard::BoardOptions options = {}) : BoardRig(std::move(options)) { load(kPgSibl); }

    void wake() {
        EXPECT_EQ(send("F", 100ms), "F");
        EXPECT_EQ(send("S", 1s), "");
        EXPECT_EQ(send(kVersionRequest),
                  bytes({0x02, 0x1E, 0, 0, 0, 0xA6}) + "pg_sibl simulated 1.0" + bytes({0x17, 0, 0x03}));
    }

    void programImage(std::uint64_t address, const std::string& image, bool erase) {
        wake();
        EXPECT_EQ(send(headerFrame(address, image.size(), erase ? 1 : 0), erase ? 2s : 0s), kAck);
        EXPECT_EQ(send(dataFrame(image)), kAck);
        EXPECT_EQ(send(kEndOfData), kAck);
        EXPECT_EQ(board.state(), State::Flashing);
        EXPECT_EQ(send(kComplete), kAck);
        EXPECT_EQ(board.state(), State::FlashDone);
        board.powerOn(now);
        load(kPgSibl);
    }

    std::string nand(std::uint64_t address, std::size_t size) {
        return text(board.nand().read(address, size));
    }
};

} // namespace

TEST(FlashProgrammer, ProgramsAnImageAtAnyAddress) {
    std::string image;
    for (int i = 0; i < 5000; ++i)
        image += static_cast<char>(i * 7);
    Flash board;
    board.programImage(0, image, false);
    EXPECT_EQ(board.nand(0, 5001), image + "\xFF");
    board.programImage(0x01234567, image, false);
    EXPECT_EQ(board.nand(0x01234566, 5002), "\xFF" + image + "\xFF");
    board.programImage(0x04000000 - 5000, image, false);
    EXPECT_EQ(board.nand(0x04000000 - 5001, 5001), "\xFF" + image);
}

TEST(FlashProgrammer, OnlyErasingSetsBits) {
    Flash board;
    board.programImage(0x100, bytes({0xF0, 0x0F, 0xAA}), false);
    board.programImage(0x100, bytes({0x3C, 0xFF, 0x55}), false);
    EXPECT_EQ(board.nand(0x100, 3), bytes({0x30, 0x0F, 0x00}));
    board.programImage(0x102, "\x55", true);
    EXPECT_EQ(board.nand(0x100, 3), "\xFF\xFF\x55");
}

// Replaces every byte of every frame that has one allowed value: the board stops right there.
TEST(FlashProgrammer, StopsAtTheFirstWrongByteOfAFrame) {
    const std::vector<std::string> frames{kVersionRequest, headerFrame(0, 3, 0), dataFrame("abc"), kEndOfData,
                                          kComplete};
    for (std::size_t f = 0; f < frames.size(); ++f) {
        for (std::size_t offset = 0; offset < frames[f].size(); ++offset) {
            if ((f == 1 && offset >= 6 && offset < 14) || (f == 2 && offset >= 6 && offset < 9))
                continue;
            SCOPED_TRACE("frame " + std::to_string(f) + ", offset " + std::to_string(offset));
            Flash board;
            board.send("FS", 1s);
            for (std::size_t before = 0; before < f; ++before)
                EXPECT_NE(board.send(frames[before]), "");
            std::string wrong = frames[f];
            wrong[offset] = static_cast<char>(wrong[offset] ^ 0x40);
            EXPECT_EQ(board.send(wrong.substr(0, offset)), "");
            EXPECT_EQ(board.board.state(), State::Flashing);
            board.send(wrong.substr(offset, 1));
            EXPECT_EQ(board.board.state(), State::Silent);
            EXPECT_TRUE(board.logged("offset " + std::to_string(offset) + ", expected"));
            EXPECT_EQ(board.send(wrong.substr(offset + 1) + frames[f], 10s), "");
        }
    }
}

TEST(FlashProgrammer, RefusesFramesOutOfOrderOrOutOfRange) {
    struct Case {
        std::string bytes, logged;
    };
    const std::string awake = "FS" + kVersionRequest;
    for (const Case& wrong : {
             Case{"f", "expected 0x46 'F', got 0x66 'f'"},
             Case{"Fs", "expected 0x53 'S', got 0x73 's'"},
             Case{"FS" + headerFrame(0, 1, 0), "offset 1, expected 0x0A, got 0x18"},
             Case{awake + headerFrame(0, 1, 2), "offset 20, expected 0x00 to 0x01, got 0x02"},
             Case{awake + headerFrame(0x04000000, 1, 1), "does not lie in NAND"},
             Case{awake + headerFrame(0x03FFFFFF, 2, 1), "does not lie in NAND"},
             Case{awake + headerFrame(0, 1, 0) + dataFrame("ab"), "offset 1, expected 0x0A, got 0x0B"},
         }) {
        SCOPED_TRACE(wrong.logged);
        Flash board;
        board.send(wrong.bytes);
        EXPECT_TRUE(board.logged(wrong.logged));
        EXPECT_EQ(board.board.state(), State::Silent);
    }
}

TEST(FlashProgrammer, ClaimsAnyVersionLength) {
    for (const auto& [claimed, sent] : std::vector<std::pair<std::uint32_t, std::size_t>>{
             {9, 9}, {8, 12}, {12, 12}, {300, 300}, {32767, 32767}, {40000, 12}, {0xFFFFFFFF, 12}}) {
        zrkboard::BoardOptions options;
        options.versionText = "v42";
        options.misbehaviour.versionLength = claimed;
        Flash board(options);
        board.send("FS", 1s);
        const std::string frame = board.send(kVersionRequest);
        EXPECT_EQ(frame.substr(1, 4), BoardRig::word(claimed)) << claimed;
        EXPECT_EQ(frame.size(), sent) << claimed;
        EXPECT_EQ(frame.back(), '\x03');
    }
}

TEST(FlashProgrammer, TakesItsTimeToEraseAndWritesWholePages) {
    zrkboard::BoardOptions options;
    options.eraseTime = 30s;
    Flash board(options);
    board.wake();
    EXPECT_EQ(board.send(headerFrame(0, 5000, 1), 29999ms), "");
    EXPECT_EQ(board.wait(1ms), kAck);
    board.send(dataFrame(std::string(5000, '\0')).substr(0, 6 + 4500));
    EXPECT_EQ(board.nand(4095, 2), bytes({0x00, 0xFF})) << "a transfer broken off in the third page";
}
