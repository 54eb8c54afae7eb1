#include "BoardRig.h"

#include <QProcess>

#include <gtest/gtest.h>

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <fstream>
#include <poll.h>
#include <regex>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

// Tests the program as a loader sees it: a device to open, a paced line, a hang-up.

namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;
namespace fs = std::filesystem;

constexpr int kLimit = 600'000; // ms; only a fault lasts that long

// A running zrk-board.
struct Program : QProcess {
    explicit Program(const std::vector<std::string>& arguments) {
        QStringList list;
        for (const std::string& argument : arguments)
            list << QString::fromStdString(argument);
        start(QStringLiteral(ZRK_BOARD_PROGRAM), list);
    }
    ~Program() override { end(); }

    // Returns the next device path that it prints.
    std::string device() {
        while (!canReadLine() && waitForReadyRead(kLimit)) {
        }
        return readLine().trimmed().toStdString();
    }

    // Waits for its end; returns the exit status, or -1.
    int join() {
        if (state() != NotRunning && !waitForFinished(kLimit))
            kill();
        return exitStatus() == NormalExit ? exitCode() : -1;
    }
    int end() {
        terminate();
        return join();
    }
};

// The loader's end of the line, as the board has set it up.
struct Port {
    explicit Port(const std::string& device) : fd(::open(device.c_str(), O_RDWR | O_NOCTTY)) {
        EXPECT_GE(fd, 0) << device;
    }
    ~Port() { ::close(fd); }
    Port(const Port&) = delete;
    Port& operator=(const Port&) = delete;

    [[nodiscard]] bool ready(short events, int limit) const {
        pollfd entry{fd, events, 0};
        return ::poll(&entry, 1, limit) > 0;
    }

    // Blocks until there has been room for all.
    [[nodiscard]] bool send(const std::string& bytes) const {
        return ::write(fd, bytes.data(), bytes.size()) == static_cast<ssize_t>(bytes.size());
    }

    // Sends in blocks of the driver's size until one stops it, then the rest; false if none did, unless a
    // busy machine sent one later than planned. The pseudo-terminal alone would not stop it at that rate.
    [[nodiscard]] bool sendAndBeStopped(const std::string& bytes) const {
        constexpr std::size_t kBlock = 4096;
        auto until = Clock::now();
        bool isLate = false;
        for (std::size_t sent = kBlock; sent < bytes.size(); sent += kBlock) {
            if (!send(bytes.substr(sent - kBlock, kBlock)))
                return false;
            isLate = isLate || Clock::now() - until > 5ms;
            for (until = Clock::now() + 350ms; Clock::now() < until;) {
                if (!ready(POLLOUT, 0) || (isLate && sent + kBlock >= bytes.size()))
                    return send(bytes.substr(sent));
            }
        }
        return false;
    }

    // Reads until the text ends as wanted, or nothing more comes.
    [[nodiscard]] std::string hear(const std::string& end) const {
        std::string heard;
        for (char byte = 0; !heard.ends_with(end) && ready(POLLIN, kLimit) && ::read(fd, &byte, 1) == 1;)
            heard += byte;
        return heard;
    }

    void answer(const std::string& bytes, const std::string& expected) const {
        EXPECT_TRUE(send(bytes));
        EXPECT_EQ(hear(expected), expected);
    }
    void startPrimary() const {
        EXPECT_TRUE(hear("5").ends_with("5"));
        answer("A", "5");
        answer("U3", "R");
        answer(BoardRig::header(0, 26) + "ZRK SIMULATED PRIMARY BOOT", "X");
    }

    const int fd;
};

} // namespace

TEST(BoardOnPty, PacesTheLineAndKeepsTheMemory) {
    const TemporaryFolder folder;
    const fs::path link = folder.path / "port";
    const fs::path dump = folder.path / "sdram";
    Program program({"--link", link, "--dump-sdram", dump, "--power-on-delay", "0"});
    const std::string device = program.device();
    EXPECT_EQ(fs::read_symlink(link), device);
    std::string image(40'000, '\0');
    for (std::size_t i = 0; i < image.size(); ++i)
        image[i] = static_cast<char>(i * 31 + i / 251);
    {
        const Port port(link);
        port.startPrimary();
        port.answer("p" + BoardRig::header(0x80000004, image.size()), "o");
        // Only too fast is a fault: a busy machine may take any time. What the line has not carried yet is in
        // the driver's 4 KiB and the 20 KiB of the pseudo-terminal.
        const auto began = Clock::now();
        const auto ahead = [&] {
            const std::chrono::duration<double> time = Clock::now() - began;
            return static_cast<double>(image.size()) - time.count() * 11'520;
        };
        EXPECT_TRUE(port.sendAndBeStopped(image)) << "no stop although the driver's buffer is full";
        EXPECT_LE(ahead(), 24 * 1024);
        EXPECT_EQ(port.hear("t"), "t");
        EXPECT_LE(ahead(), 0);
    }
    EXPECT_EQ(program.end(), 0);
    EXPECT_FALSE(fs::exists(fs::symlink_status(link)));
    EXPECT_EQ(fs::file_size(dump), 64U * 1024 * 1024);
    std::ifstream file(dump, std::ios::binary);
    std::string stored(4 + image.size(), '?');
    file.read(stored.data(), static_cast<std::streamsize>(stored.size()));
    EXPECT_TRUE(stored.substr(4) == image);
}

TEST(BoardOnPty, AHangUpReachesTheLoaderAndANewDeviceComes) {
    Program program({"--power-on-delay", "0", "--hang-up-after", "10", "--faulty-runs", "1"});
    const Port port(program.device());
    EXPECT_TRUE(port.hear("5").ends_with("5"));
    EXPECT_TRUE(port.send("AU3" + BoardRig::header(0, 26) + "ZRK SIMULATED"));
    (void)port.hear("nothing that comes");
    EXPECT_FALSE(port.send("x"));
    EXPECT_EQ(errno, EIO);

    Port(program.device()).startPrimary();
    EXPECT_EQ(program.end(), 0);
}

TEST(BoardOnPty, ABadWireLiesInBetweenAndPrintsItsSum) {
    Program program(
        {"--unpaced", "--power-on-delay", "0", "--faults", "1,to-board-loss=1,to-loader-double=1"});
    {
        const Port port(program.device());
        EXPECT_EQ(port.hear("55"), "55");
        EXPECT_TRUE(port.send("AU3"));
        EXPECT_EQ(program.end(), 0);
    }
    const std::string summary = program.readAllStandardError().toStdString();
    const std::regex expected("zrk-board: faults of seed 1: to the board 3 bytes, 3 loss; "
                              "to the loader (\\d+) bytes?, \\1 double\n");
    EXPECT_TRUE(std::regex_match(summary, expected)) << summary;
}

TEST(BoardOnPty, IsReadyForTheNextAttemptByItself) {
    Program program({"--power-on-delay", "0", "--patience", "0.2", "--power-cycles", "2"});
    const std::string device = program.device();
    Port(device).startPrimary();
    Port(device).startPrimary(); // the primary boot gets no command, so its power is cycled
    ASSERT_GT(program.processId(), 0);
    ::kill(static_cast<pid_t>(program.processId()), SIGUSR1);
    EXPECT_EQ(program.join(), 0) << "two runs";
}

TEST(BoardOnPty, KeepsAWaitingPrimaryBootAndDetectsThatTheLoaderHasGone) {
    Program program({"--power-on-delay", "0", "--patience", "0", "--power-cycles", "1"});
    const std::string device = program.device();
    Port(device).startPrimary();
    const std::string header = "p" + BoardRig::header(0x80000004, 1);
    {
        const Port later(device);
        later.answer(header, "o");
        later.answer("z", "t");
        later.answer(header, "o");
    }
    EXPECT_EQ(program.join(), 0) << "broken off: its only run is over";
}

TEST(BoardOnPty, RejectsUnusableFilesAtTheStart) {
    const TemporaryFolder folder;
    const std::string link = folder.path / "port";
    const std::string other = folder.path / "other";
    std::ofstream(other) << "no NAND";
    const std::string foreign = folder.path / "foreign"; // no board has made it
    fs::create_symlink(other, foreign);
    const std::string pipe = folder.path / "pipe"; // has no writer
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    Program first({"--link", link});
    const std::string device = first.device();
    for (const std::vector<std::string>& refused : std::vector<std::vector<std::string>>{
             {"--link", folder.path / "." / "port"},
             {"--link", foreign},
             {"--replay", pipe},
             {"--nand", other},
             {"--dump-sdram", folder.path},
             {"--dump-iram", folder.path / "no" / "dump"},
             {"--dump-iram", other, "--dump-sdram", folder.path / "." / "other"}}) {
        Program second(refused);
        EXPECT_EQ(second.device(), "") << "announced in spite of " << refused[0] << ' ' << refused[1];
        EXPECT_EQ(second.end(), 1);
    }
    EXPECT_EQ(fs::read_symlink(link), device);
    EXPECT_EQ(fs::file_size(other), 7U);
    EXPECT_EQ(fs::read_symlink(foreign), other);

    first.kill();
    EXPECT_EQ(first.join(), -1);
    Program third({"--link", link});
    const std::string fresh = third.device();
    EXPECT_EQ(fs::read_symlink(link), fresh) << "a link that a dead board has left is replaced";
}

TEST(BoardOnPty, IdlesWithAndWithoutALoader) {
    const auto processorTime = [] {
        rusage usage{};
        ::getrusage(RUSAGE_CHILDREN, &usage);
        return (usage.ru_utime.tv_sec + usage.ru_stime.tv_sec) * 1s +
               (usage.ru_utime.tv_usec + usage.ru_stime.tv_usec) * 1us;
    };
    const auto before = processorTime();
    Program program({"--power-on-delay", "0"});
    EXPECT_EQ(Port(program.device()).hear("555"), "555") << "bytes at their time, no more and no less";
    EXPECT_EQ(program.end(), 0);
    EXPECT_LT(processorTime() - before, 400ms);
}
