#include "BoardRig.h"
#include "board/program/CommandLine.h"
#include "board/program/FileMemory.h"
#include "board/program/MemoryDump.h"
#include "board/program/PowerUser.h"
#include "board/program/SampleImages.h"

#include <gtest/gtest.h>

#include <fstream>
#include <functional>
#include <iterator>
#include <map>

using namespace std::chrono_literals;
using zrkboard::State;

namespace {

namespace fs = std::filesystem;

std::string contentOf(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

zrkboard::ProgramOptions parse(const std::vector<std::string>& arguments) {
    return zrkboard::parseCommandLine(arguments);
}

// Returns the message of the exception; nothing if there is none.
std::string complaint(const std::function<void()>& action) {
    try {
        action();
    } catch (const std::exception& error) {
        return error.what();
    }
    return "";
}

} // namespace

TEST(CommandLine, FillsTheOptions) {
    const auto options =
        parse({"--baud", "9600", "--power-on-delay=250ms", "--patience", "0", "--power-cycles", "3",
               "--fault", "accept#2=refuse", "--fault=ack-data=wrong@7:0x00", "--noise", "a\\x00z",
               "--hang-up-after", "1000", "--nand", "n.bin", "--verbose"});
    EXPECT_EQ(options.lineRate, 960U);
    EXPECT_EQ(options.board.powerOnDelay, 250ms);
    EXPECT_EQ(options.patience, 0s);
    EXPECT_EQ(options.powerCycles, 3U);
    ASSERT_EQ(options.board.misbehaviour.faults.size(), 2U);
    EXPECT_EQ(options.board.misbehaviour.faults[0].occurrence, 2U);
    EXPECT_EQ(options.board.misbehaviour.faults[1].position, 7U);
    EXPECT_EQ(options.board.misbehaviour.noise, std::string("a\0z", 3));
    EXPECT_EQ(options.board.misbehaviour.hangUpAfterCode, 1000U);
    EXPECT_EQ(options.nandFile, "n.bin");
    EXPECT_TRUE(options.verbose);
    EXPECT_EQ(parse({"--unpaced"}).lineRate, 0U);
}

TEST(CommandLine, RejectsBadArguments) {
    EXPECT_EQ(complaint([] {
                  (void)parse({"--hang-up-after", "0"});
              }),
              "--hang-up-after 0: expected a number from 1 to 4294967295");
    EXPECT_THROW((void)parse({"--replay=t", "--faults=1"}), std::invalid_argument);
    for (const std::string argument :
         {"--faults=1,flop=1", "--nosuch", "stray", "--", "--baud", "--baud=fast", "--baud=0", "--verbose=1",
          "--power-on-delay=-1", "--power-cycles=0", "--fault=R=silly", "--noise=\\q", "--noise=\\x4",
          "--version-length=4294967296"})
        EXPECT_THROW((void)parse({argument}), std::invalid_argument) << argument;
}

TEST(SampleImages, FitTheBoardAndDoNotOverlap) {
    const TemporaryFolder folder;
    const fs::path images = folder.path / "new" / "images";
    zrkboard::writeSampleImages(images);
    const std::string ini = contentOf(images / "zrk-loader.INI");
    EXPECT_NE(ini.find("[BINFILES]\nPRIMARY=primary.bin,0x0000\n"), std::string::npos) << ini;
    EXPECT_NE(ini.find("\n[IMGFILES]\nUBOOT=u-boot.ubt,0x80100000\n"), std::string::npos);

    std::map<std::uint64_t, std::uint64_t> taken{{0x80000000, 0x80000000}, {0x82000000, 0x82000000}};
    for (const auto& image : zrkboard::sampleImages()) {
        EXPECT_EQ(fs::file_size(images / image.file), image.size);
        const std::uint64_t start = std::stoull(image.address, nullptr, 16);
        if (start >= 0x80000000 && !taken.emplace(start, start + image.size - 1).second)
            ADD_FAILURE() << image.file << " starts where another one does";
    }
    std::uint64_t free = 0x80000000;
    for (const auto& [start, last] : taken) {
        EXPECT_GE(start, free);
        free = last + 1;
    }
    EXPECT_LE(free, 0x83FFFFF0U);

    EXPECT_EQ(BoardRig().load(contentOf(images / "primary.bin"), 1s), "X");
    BoardRig flashing;
    flashing.load(contentOf(images / "pg_sibl.bin"));
    EXPECT_EQ(flashing.send("F", 1s), "F");
}

TEST(SampleImages, NeverOverwriteOtherFiles) {
    const TemporaryFolder folder;
    const fs::path ini = folder.path / "zrk-loader.INI";
    const fs::path flash = folder.path / "flash.bin";
    const auto write = [&] { zrkboard::writeSampleImages(folder.path); };
    std::ofstream(ini) << "mine";
    EXPECT_NE(complaint(write).find(ini.string()), std::string::npos);
    EXPECT_EQ(contentOf(ini), "mine");
    EXPECT_FALSE(fs::exists(flash)) << "nothing is half-written";

    fs::remove(ini);
    write();
    fs::remove(flash);
    write();
    EXPECT_EQ(fs::file_size(flash), 65536U) << "what is missing is added";
}

TEST(FileMemory, IsMadeErasedAndKept) {
    const TemporaryFolder folder;
    const std::string path = folder.path / "nand.bin";
    const std::vector<std::uint8_t> data{1, 2, 3};
    {
        zrkboard::FileMemory memory(path, 4096, 0xFF);
        memory.write(100, data);
        EXPECT_THROW(memory.write(4095, data), std::out_of_range);
    }
    const std::string content = std::string(4096, '\xFF').replace(100, 3, "\x01\x02\x03");
    EXPECT_EQ(contentOf(path), content);
    for (const std::uint64_t otherSize : {1024, 4095, 8192}) {
        EXPECT_THROW(zrkboard::FileMemory(path, otherSize, 0xFF), std::runtime_error);
        EXPECT_EQ(contentOf(path), content);
    }
    zrkboard::FileMemory memory(path, 4096, 0xFF);
    EXPECT_EQ(text(memory.read(99, 4)), "\xFF\x01\x02\x03");
    memory.fill(0xFF);
    EXPECT_EQ(contentOf(path), std::string(4096, '\xFF'));
    fs::resize_file(path, 0);
    EXPECT_EQ(zrkboard::FileMemory(path, 8, 0xFF).read(7, 1).front(), 0xFF) << "an empty file is a new one";
    EXPECT_THROW(zrkboard::FileMemory(folder.path, 1024, 0xFF), std::runtime_error) << "a folder";
}

TEST(MemoryDump, HoldsTheWholeMemory) {
    const TemporaryFolder folder;
    zrkboard::PagedMemory memory(0x80000000, 300'000, 0);
    memory.write(0x80000000 + 131'070, std::vector<std::uint8_t>{9, 8, 7, 6}); // over a page's end
    zrkboard::dumpMemory(memory, folder.path / "dump");
    EXPECT_EQ(contentOf(folder.path / "dump"),
              std::string(300'000, '\0').replace(131'070, 4, "\x09\x08\x07\x06"));
    EXPECT_THROW(zrkboard::dumpMemory(memory, folder.path / "no" / "dump"), std::runtime_error);
}

TEST(PowerUser, CyclesThePowerForTheNextAttempt) {
    struct Case {
        State state;
        bool whenClosed;  // after the loader has closed the port
        bool whenWaiting; // after a loader has sent nothing for a while
    };
    const zrkboard::TimePoint now{};
    for (const Case& c : {Case{State::Announcing, false, false}, Case{State::BootRom, true, true},
                          Case{State::PrimaryWaiting, false, true}, Case{State::PrimaryLoading, true, true},
                          Case{State::Prompt, false, true}, Case{State::Flashing, true, true},
                          Case{State::FlashDone, true, true}, Case{State::Silent, true, true},
                          Case{State::HungUp, false, false}}) {
        SCOPED_TRACE(static_cast<int>(c.state));
        zrkboard::PowerUser user(2s);
        const auto wants = [&](zrkboard::Duration after, bool busy = false, bool terminal = false) {
            return user.wantsPowerCycle({c.state, busy, terminal}, now + after);
        };
        user.loaderOpened(now);
        user.loaderSpoke();
        EXPECT_FALSE(wants(1h)) << "a conversation is under way";
        user.loaderClosed();
        EXPECT_FALSE(wants(1h, true)) << "bytes are on their way";
        EXPECT_EQ(wants(1h), c.whenClosed);

        user.loaderOpened(now);
        EXPECT_EQ(user.nextLook(now), now + 2s);
        EXPECT_FALSE(wants(1999ms));
        EXPECT_EQ(wants(2s), c.whenWaiting);
        EXPECT_FALSE(wants(2s, false, true)) << "a terminal";
        EXPECT_FALSE(wants(3s)) << "a terminal that was left";
    }
    zrkboard::PowerUser patient(0s);
    patient.loaderOpened(now);
    EXPECT_FALSE(patient.wantsPowerCycle({State::Silent, false, false}, now + 1h));
    EXPECT_FALSE(patient.nextLook(now));
}
