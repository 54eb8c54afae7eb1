#include "Bench.h"
#include "board/program/CommandLine.h"
#include "board/program/FileMemory.h"
#include "board/program/MemoryDump.h"
#include "board/program/PowerUser.h"
#include "board/program/SampleImages.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>

using namespace std::chrono_literals;
using zrkboard::State;

namespace {

namespace fs = std::filesystem;

struct TemporaryFolder {
    TemporaryFolder() {
        std::string name = (fs::temp_directory_path() / "zrk-board-XXXXXX").string();
        path = ::mkdtemp(name.data());
    }
    ~TemporaryFolder() { fs::remove_all(path); }
    fs::path path;
};

std::string contentOf(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

zrkboard::ProgramOptions parse(const std::vector<std::string>& arguments) {
    return zrkboard::parseCommandLine(arguments);
}

} // namespace

TEST(CommandLine, FillsTheOptions) {
    const auto options =
        parse({"--baud", "9600", "--power-on-delay=250ms", "--patience", "0", "--power-cycles", "3",
               "--fault", "accept#2=refuse", "--fault=ack-data=wrong@7:0x00", "--noise", "a\\x005",
               "--hang-up-after", "1000", "--nand", "n.bin", "--verbose"});
    EXPECT_EQ(options.lineRate, 960U);
    EXPECT_EQ(options.board.powerOnDelay, 250ms);
    EXPECT_EQ(options.patience, 0s);
    EXPECT_EQ(options.powerCycles, 3U);
    ASSERT_EQ(options.board.misbehaviour.faults.size(), 2U);
    EXPECT_EQ(options.board.misbehaviour.faults[0].occurrence, 2U);
    EXPECT_EQ(options.board.misbehaviour.faults[1].position, 7U);
    EXPECT_EQ(options.board.misbehaviour.noise, std::string("a\0"
                                                            "5",
                                                            3));
    EXPECT_EQ(options.board.misbehaviour.hangUpAfterCode, 1000U);
    EXPECT_EQ(options.nandFile, "n.bin");
    EXPECT_TRUE(options.verbose);
    EXPECT_EQ(parse({"--unpaced"}).lineRate, 0U);
}

TEST(CommandLine, RejectsWhatItDoesNotUnderstand) {
    for (const std::vector<std::string>& wrong :
         std::vector<std::vector<std::string>>{{"--nosuch"},
                                               {"stray"},
                                               {"--"},
                                               {"--baud"},
                                               {"--baud", "fast"},
                                               {"--baud", "0"},
                                               {"--verbose=1"},
                                               {"--power-on-delay", "-1"},
                                               {"--power-cycles", "0"},
                                               {"--fault", "R=silly"},
                                               {"--noise", "\\q"},
                                               {"--noise", "\\x4"},
                                               {"--version-length", "4294967296"}})
        EXPECT_THROW((void)parse(wrong), std::invalid_argument) << wrong.front();
}

TEST(CommandLine, SaysWhichValueIsWrongAndWhatIsExpected) {
    try {
        (void)parse({"--hang-up-after", "0"});
        FAIL();
    } catch (const std::invalid_argument& error) {
        EXPECT_STREQ(error.what(), "--hang-up-after 0: expected a number from 1 to 4294967295");
    }
}

TEST(SampleImages, FitTheBoardAndDoNotOverlap) {
    const TemporaryFolder folder;
    zrkboard::writeSampleImages(folder.path / "new" / "images");
    const fs::path images = folder.path / "new" / "images";
    const std::string ini = contentOf(images / "zrk-loader.INI");
    EXPECT_NE(ini.find("[BINFILES]\nPRIMARY=primary.bin,0x0000\n"), std::string::npos) << ini;
    EXPECT_NE(ini.find("\n[IMGFILES]\nUBOOT=u-boot.ubt,0x80100000\n"), std::string::npos);

    std::vector<std::pair<std::uint64_t, std::uint64_t>> taken{{0x80000000, 0x80000000},
                                                               {0x82000000, 0x82000000}};
    for (const auto& image : zrkboard::sampleImages()) {
        EXPECT_EQ(fs::file_size(images / image.file), image.size);
        const std::uint64_t start = std::stoull(image.address, nullptr, 16);
        if (start < 0x80000000)
            continue;
        const std::uint64_t last = start + image.size - 1;
        EXPECT_LE(last, 0x83FFFFEFU);
        for (const auto& [otherStart, otherLast] : taken)
            EXPECT_TRUE(last < otherStart || start > otherLast) << image.file;
        taken.emplace_back(start, last);
    }

    const std::string primary = contentOf(images / "primary.bin");
    Bench bringUp;
    bringUp.unlock();
    EXPECT_EQ(bringUp.send(Bench::header(0, primary.size()) + primary, 1s), "X");
    const std::string pgSibl = contentOf(images / "pg_sibl.bin");
    Bench flashing;
    flashing.unlock();
    EXPECT_EQ(flashing.send(Bench::header(0, pgSibl.size()) + pgSibl + "F", 1s), "F");
}

TEST(SampleImages, OverwriteNothingThatIsNotTheirs) {
    const TemporaryFolder folder;
    const fs::path ini = folder.path / "zrk-loader.INI";
    std::ofstream(ini) << "mine";
    try {
        zrkboard::writeSampleImages(folder.path);
        FAIL();
    } catch (const std::runtime_error& error) {
        EXPECT_NE(std::string(error.what()).find(ini.string()), std::string::npos) << error.what();
    }
    EXPECT_EQ(contentOf(ini), "mine");
    EXPECT_FALSE(fs::exists(folder.path / "flash.bin")) << "nothing is half-written";

    fs::remove(ini);
    zrkboard::writeSampleImages(folder.path);
    fs::remove(folder.path / "flash.bin");
    zrkboard::writeSampleImages(folder.path);
    EXPECT_EQ(fs::file_size(folder.path / "flash.bin"), 65536U) << "what is missing is added";
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
    EXPECT_EQ(memory.read(99, 4), (std::vector<std::uint8_t>{0xFF, 1, 2, 3}));
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
        bool whenClosed;  // once the loader has closed the port
        bool whenWaiting; // once a loader has said nothing for a while
    };
    const zrkboard::TimePoint now{};
    for (const Case& c : {Case{State::Announcing, false, false}, Case{State::BootRom, true, true},
                          Case{State::PrimaryWaiting, false, true}, Case{State::PrimaryLoading, true, true},
                          Case{State::Prompt, false, true}, Case{State::Flashing, true, true},
                          Case{State::FlashDone, true, true}, Case{State::Silent, true, true},
                          Case{State::HungUp, false, false}}) {
        SCOPED_TRACE(static_cast<int>(c.state));
        zrkboard::PowerUser user(2s);
        user.loaderOpened(now);
        user.loaderSpoke();
        EXPECT_FALSE(user.wantsPowerCycle({c.state, false, false}, now + 1h))
            << "a conversation is under way";
        user.loaderClosed();
        EXPECT_FALSE(user.wantsPowerCycle({c.state, true, false}, now + 1h)) << "bytes are on their way";
        EXPECT_EQ(user.wantsPowerCycle({c.state, false, false}, now + 1h), c.whenClosed);

        user.loaderOpened(now);
        EXPECT_EQ(user.nextLook(now), now + 2s);
        EXPECT_FALSE(user.wantsPowerCycle({c.state, false, false}, now + 1999ms));
        EXPECT_EQ(user.wantsPowerCycle({c.state, false, false}, now + 2s), c.whenWaiting);
        EXPECT_FALSE(user.wantsPowerCycle({c.state, false, true}, now + 2s)) << "a terminal";
        EXPECT_FALSE(user.wantsPowerCycle({c.state, false, false}, now + 3s)) << "a terminal that was left";
    }
    zrkboard::PowerUser patient(0s);
    patient.loaderOpened(now);
    EXPECT_FALSE(patient.wantsPowerCycle({State::Silent, false, false}, now + 1h));
    EXPECT_FALSE(patient.nextLook(now));
}
