#include "Bench.h"

#include <gtest/gtest.h>

#include <algorithm>

using namespace std::chrono_literals;
using zrkboard::State;

namespace {

std::string bytes(std::initializer_list<int> values) {
    std::string all;
    for (const int value : values)
        all += static_cast<char>(value);
    return all;
}

const std::string kVersionRequest = bytes({0x02, 0x0A, 0, 0, 0, 0xA6, 0xA6, 0, 0, 0x03});
const std::string kEndOfData = bytes({0x02, 0x0C, 0, 0, 0, 0xA3, 0xA3, 0, 0, 0, 0, 0x03});
const std::string kComplete = bytes({0x02, 0x0A, 0, 0, 0, 0xB1, 0xB1, 0, 0, 0x03});
const std::string kAck = bytes({0x02, 0x0A, 0, 0, 0, 0x06, 0x06, 0x17, 0, 0x03});

std::string headerFrame(std::uint64_t address, std::uint64_t size, int erase) {
    return bytes({0x02, 0x18, 0, 0, 0, 0xAE}) + Bench::word(address) + Bench::word(size) +
           bytes({0x03, 0, 0, 0, 0x01, 0, erase, 0, 0, 0x03});
}

std::string dataFrame(const std::string& image) {
    return bytes({0x02}) + Bench::word(image.size() + 9) + bytes({0xAF}) + image + bytes({0, 0, 0x03});
}

struct Flash : Bench {
    explicit Flash(zrkboard::BoardOptions options = {}) : Bench(std::move(options)) {
        startFlashProgrammer();
    }

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
    }

    std::string nand(std::uint64_t address, std::size_t size) {
        const auto cells = board.nand().read(address, size);
        return {cells.begin(), cells.end()};
    }
};

} // namespace

TEST(FlashProgrammer, ProgramsAnImageAtAnyAddress) {
    std::string image;
    for (int i = 0; i < 5000; ++i)
        image += static_cast<char>(i * 7);
    for (const std::uint64_t address : {0x0ULL, 0x01234567ULL, 0x04000000ULL - 5000}) {
        Flash board;
        board.programImage(address, image, false);
        EXPECT_EQ(board.nand(address, image.size()), image);
        if (address > 0) {
            EXPECT_EQ(board.nand(address - 1, 1), "\xFF");
        }
        if (address + image.size() < 0x04000000) {
            EXPECT_EQ(board.nand(address + image.size(), 1), "\xFF");
        }
    }
}

TEST(FlashProgrammer, OnlyErasingSetsBits) {
    Flash board;
    board.programImage(0x100, bytes({0xF0, 0x0F, 0xAA}), false);
    board.board.powerOn(board.now);
    board.startFlashProgrammer();
    board.programImage(0x100, bytes({0x3C, 0xFF, 0x55}), false);
    EXPECT_EQ(board.nand(0x100, 3), bytes({0x30, 0x0F, 0x00}));

    board.board.powerOn(board.now);
    board.startFlashProgrammer();
    board.programImage(0x102, bytes({0x55}), true);
    EXPECT_EQ(board.nand(0x100, 3), bytes({0xFF, 0xFF, 0x55}));
}

TEST(FlashProgrammer, ErasingTakesItsTime) {
    zrkboard::BoardOptions options;
    options.eraseTime = 30s;
    Flash board(options);
    board.wake();
    EXPECT_EQ(board.send(headerFrame(0, 1, 1), 29999ms), "");
    EXPECT_EQ(board.wait(1ms), kAck);
}

// Every byte of every frame that is not a value of its own, replaced by another one: the board stops right
// there.
TEST(FlashProgrammer, StopsAtTheFirstWrongByteOfAFrame) {
    const std::string image = "abc";
    const std::vector<std::string> frames{kVersionRequest, headerFrame(0, image.size(), 0), dataFrame(image),
                                          kEndOfData, kComplete};
    for (std::size_t f = 0; f < frames.size(); ++f) {
        for (std::size_t offset = 0; offset < frames[f].size(); ++offset) {
            const bool isValue =
                (f == 1 && offset >= 6 && offset < 14) || (f == 2 && offset >= 6 && offset < 9);
            if (isValue)
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

TEST(FlashProgrammer, RefusesWhatIsOutOfOrderOrOutOfRange) {
    struct Case {
        const char* what;
        std::string bytes;
        std::string logged;
    };
    for (const Case& wrong : {
             Case{"no F", "f", "expected 0x46 'F', got 0x66 'f'"},
             Case{"no S", "Fs", "expected 0x53 'S', got 0x73 's'"},
             Case{"header first", "FS" + headerFrame(0, 1, 0), "offset 1, expected 0x0A, got 0x18"},
             Case{"erase flag", "FS" + kVersionRequest + headerFrame(0, 1, 2),
                  "offset 20, expected 0x00 to 0x01, got 0x02"},
             Case{"behind NAND", "FS" + kVersionRequest + headerFrame(0x04000000, 1, 1),
                  "does not lie in NAND"},
             Case{"over the end", "FS" + kVersionRequest + headerFrame(0x03FFFFFF, 2, 1),
                  "does not lie in NAND"},
             Case{"data longer than said", "FS" + kVersionRequest + headerFrame(0, 1, 0) + dataFrame("ab"),
                  "offset 1, expected 0x0A, got 0x0B"},
         }) {
        SCOPED_TRACE(wrong.what);
        Flash board;
        board.send(wrong.bytes);
        EXPECT_TRUE(board.logged(wrong.logged));
        EXPECT_EQ(board.board.state(), State::Silent);
    }
}

TEST(FlashProgrammer, ClaimsAnyVersionLength) {
    struct Case {
        std::uint32_t claimed;
        std::string field;
        std::size_t sent;
    };
    for (const Case& c :
         {Case{9, bytes({9, 0, 0, 0}), 9}, Case{8, bytes({8, 0, 0, 0}), 12},
          Case{12, bytes({12, 0, 0, 0}), 12}, Case{300, bytes({0x2C, 0x01, 0, 0}), 300},
          Case{32767, bytes({0xFF, 0x7F, 0, 0}), 32767}, Case{40000, bytes({0x40, 0x9C, 0, 0}), 12},
          Case{0xFFFFFFFF, bytes({0xFF, 0xFF, 0xFF, 0xFF}), 12}}) {
        zrkboard::BoardOptions options;
        options.versionText = "v42";
        options.misbehaviour.versionLength = c.claimed;
        Flash board(options);
        board.send("FS", 1s);
        const std::string frame = board.send(kVersionRequest);
        EXPECT_EQ(frame.substr(1, 4), c.field) << c.claimed;
        EXPECT_EQ(frame.size(), c.sent) << c.claimed;
        EXPECT_EQ(frame.back(), '\x03');
    }
}

TEST(FlashProgrammer, ABrokenOffTransferLeavesWholePages) {
    Flash board;
    board.wake();
    board.send(headerFrame(0, 5000, 0));
    board.send(dataFrame(std::string(5000, '\0')).substr(0, 6 + 4500));
    EXPECT_EQ(board.nand(4095, 2), bytes({0x00, 0xFF}));
}
