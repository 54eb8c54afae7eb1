#include <gtest/gtest.h>

#include <cerrno>
#include <chrono>
#include <csignal>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <poll.h>
#include <string>
#include <sys/resource.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>
#include <vector>

// The program as a loader meets it: a device to open, a paced line, a hang-up.

namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;
namespace fs = std::filesystem;

// False when it does not come; a busy machine may keep it for long.
bool waitFor(int fd, short events) {
    pollfd entry{fd, events, 0};
    return ::poll(&entry, 1, 20'000) > 0;
}

// Reads until the text ends as wanted, or nothing more comes.
std::string readUntil(int fd, const std::string& end) {
    std::string heard;
    while (!heard.ends_with(end) && waitFor(fd, POLLIN)) {
        char byte = 0;
        if (::read(fd, &byte, 1) != 1)
            break;
        heard += byte;
    }
    return heard;
}

// A running zrk-board.
class Program {
  public:
    explicit Program(std::vector<std::string> arguments) {
        int pipe[2];
        EXPECT_EQ(::pipe(pipe), 0);
        arguments.insert(arguments.begin(), ZRK_BOARD_PROGRAM);
        m_pid = ::fork();
        if (m_pid == 0) {
            ::dup2(pipe[1], STDOUT_FILENO);
            ::close(pipe[0]);
            std::vector<char*> argv;
            argv.reserve(arguments.size() + 1);
            for (std::string& argument : arguments)
                argv.push_back(argument.data());
            argv.push_back(nullptr);
            ::execv(argv[0], argv.data());
            ::_exit(127);
        }
        ::close(pipe[1]);
        m_out = pipe[0];
    }
    ~Program() {
        end();
        ::close(m_out);
    }
    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;

    // The next device path that it prints.
    std::string device() const {
        const std::string line = readUntil(m_out, "\n");
        return line.substr(0, line.find('\n'));
    }

    void signal(int number) const { ::kill(m_pid, number); }

    // Asks it to end if it has not; the exit status, and the processor time it took.
    int end() {
        if (m_pid < 0)
            return m_status;
        signal(SIGTERM);
        return join();
    }
    int join() {
        int status = 0;
        rusage usage{};
        ::wait4(m_pid, &status, 0, &usage);
        m_pid = -1;
        const auto time = [](timeval t) {
            return std::chrono::seconds(t.tv_sec) + std::chrono::microseconds(t.tv_usec);
        };
        processorTime = time(usage.ru_utime) + time(usage.ru_stime);
        return m_status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }

    std::chrono::microseconds processorTime{};

  private:
    pid_t m_pid = -1;
    int m_out = -1;
    int m_status = -1;
};

// The loader's end of the line.
class Port {
  public:
    explicit Port(const std::string& device) : fd(::open(device.c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK)) {
        EXPECT_GE(fd, 0) << device;
        termios settings{};
        ::tcgetattr(fd, &settings);
        ::cfmakeraw(&settings);
        ::tcsetattr(fd, TCSANOW, &settings);
    }
    ~Port() { ::close(fd); }
    Port(const Port&) = delete;
    Port& operator=(const Port&) = delete;

    // As much as there is room for at a time.
    bool send(const std::string& bytes) const {
        for (std::size_t sent = 0; sent < bytes.size();) {
            const ssize_t count = ::write(fd, bytes.data() + sent, bytes.size() - sent);
            if (count > 0)
                sent += static_cast<std::size_t>(count);
            else if (errno != EAGAIN || !waitFor(fd, POLLOUT))
                return false;
        }
        return true;
    }

    // Sends in blocks of the driver's size until one stops it, then the rest; what was sent when it was
    // stopped, 0 if it never was. The pseudo-terminal alone would not stop it at that rate.
    std::size_t sendUntilStopped(const std::string& bytes) const {
        constexpr std::size_t kBlock = 4096;
        pollfd entry{fd, POLLOUT, 0};
        for (std::size_t sent = kBlock; sent < bytes.size(); sent += kBlock) {
            send(bytes.substr(sent - kBlock, kBlock));
            for (const auto until = Clock::now() + 350ms; Clock::now() < until;) {
                if (::poll(&entry, 1, 0) == 0)
                    return send(bytes.substr(sent)) ? sent : 0;
            }
        }
        return 0;
    }

    std::string hear(const std::string& end) const { return readUntil(fd, end); }

    void startPrimary() const {
        EXPECT_TRUE(hear("5").ends_with("5"));
        send("A");
        EXPECT_EQ(hear("5"), "5");
        send("U3");
        EXPECT_EQ(hear("R"), "R");
        send(std::string("\0\0\0\0\x1A\0\0\0", 8) + "ZRK SIMULATED PRIMARY BOOT");
        EXPECT_EQ(hear("X"), "X");
    }

    const int fd;
};

struct TemporaryFolder {
    TemporaryFolder() {
        std::string name = (fs::temp_directory_path() / "zrk-board-XXXXXX").string();
        path = ::mkdtemp(name.data());
    }
    ~TemporaryFolder() { fs::remove_all(path); }
    fs::path path;
};

} // namespace

TEST(BoardOnPty, PacesTheLineAndKeepsTheMemory) {
    const TemporaryFolder folder;
    const fs::path link = folder.path / "port";
    const fs::path dump = folder.path / "sdram";
    Program program({"--link", link, "--dump-sdram", dump, "--power-on-delay", "0"});
    EXPECT_EQ(fs::read_symlink(link), program.device());
    std::string image(40'000, '\0');
    for (std::size_t i = 0; i < image.size(); ++i)
        image[i] = static_cast<char>(i * 31 + i / 251);
    {
        const Port port(link);
        port.startPrimary();
        port.send(std::string("p\x04\0\0\x80\x40\x9C\0\0", 9));
        EXPECT_EQ(port.hear("o"), "o");
        // Only too fast is a fault: a busy machine may take any time. What the line has not carried yet is in
        // the driver's 4 KiB and the 20 KiB of the pseudo-terminal.
        const auto began = Clock::now();
        const auto ahead = [began](std::size_t handedOver) {
            const std::chrono::duration<double> time = Clock::now() - began;
            return static_cast<double>(handedOver) - time.count() * 11'520;
        };
        EXPECT_GT(port.sendUntilStopped(image), 0U) << "no stop although the driver's buffer is full";
        EXPECT_LE(ahead(image.size()), 24 * 1024);
        EXPECT_EQ(port.hear("t"), "t");
        EXPECT_LE(ahead(image.size()), 0);
    }
    EXPECT_EQ(program.end(), 0);
    EXPECT_FALSE(fs::exists(fs::symlink_status(link)));
    EXPECT_EQ(fs::file_size(dump), 64U * 1024 * 1024);
    std::ifstream file(dump, std::ios::binary);
    file.seekg(4);
    std::string stored(image.size(), '?');
    file.read(stored.data(), static_cast<std::streamsize>(stored.size()));
    EXPECT_TRUE(stored == image);
}

TEST(BoardOnPty, AHangUpReachesTheLoaderAndANewDeviceComes) {
    Program program({"--power-on-delay", "0", "--hang-up-after", "10", "--faulty-runs", "1"});
    const std::string device = program.device();
    const Port port(device);
    EXPECT_TRUE(port.hear("5").ends_with("5"));
    port.send("AU3" + std::string("\0\0\0\0\x1A\0\0\0", 8) + "ZRK SIMULATED");
    while (waitFor(port.fd, POLLIN)) {
        char rest = 0;
        if (::read(port.fd, &rest, 1) <= 0)
            break;
    }
    pollfd entry{port.fd, POLLIN, 0};
    ASSERT_EQ(::poll(&entry, 1, 0), 1);
    EXPECT_NE(entry.revents & POLLHUP, 0);
    EXPECT_EQ(::write(port.fd, "x", 1), -1);
    EXPECT_EQ(errno, EIO);

    const Port replugged(program.device());
    replugged.startPrimary();
    EXPECT_EQ(program.end(), 0);
}

TEST(BoardOnPty, IsReadyForTheNextAttemptWithoutBeingToldSo) {
    Program program({"--power-on-delay", "0", "--patience", "0.2", "--power-cycles", "2"});
    const std::string device = program.device();
    Port(device).startPrimary();
    Port(device).startPrimary(); // nobody speaks to the waiting primary boot, so its power is cycled
    program.signal(SIGUSR1);
    EXPECT_EQ(program.join(), 0) << "two runs";
}

TEST(BoardOnPty, NoticesThatTheLoaderHasGone) {
    Program program({"--power-on-delay", "0", "--patience", "0", "--power-cycles", "1"});
    {
        const Port brokenOff(program.device());
        EXPECT_TRUE(brokenOff.hear("5").ends_with("5"));
        brokenOff.send("AU");
        EXPECT_EQ(brokenOff.hear("5"), "5");
    }
    EXPECT_EQ(program.join(), 0) << "its only run is over";
}

TEST(BoardOnPty, LeavesAWaitingPrimaryBootRunning) {
    Program program({"--power-on-delay", "0", "--patience", "0"});
    const std::string device = program.device();
    Port(device).startPrimary();
    const Port later(device);
    later.send("p" + std::string("\x04\0\0\x80\x01\0\0\0", 8));
    EXPECT_EQ(later.hear("o"), "o");
    later.send("z");
    EXPECT_EQ(later.hear("t"), "t");
}

TEST(BoardOnPty, FindsOutAtTheStartWhatItMayNotUse) {
    const TemporaryFolder folder;
    const std::string link = folder.path / "port";
    const std::string other = folder.path / "other";
    std::ofstream(other) << "no NAND";
    Program first({"--link", link});
    const std::string device = first.device();
    for (const std::vector<std::string>& refused : std::vector<std::vector<std::string>>{
             {"--link", folder.path / "." / "port"},
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

    first.signal(SIGKILL);
    first.join();
    Program third({"--link", link});
    EXPECT_EQ(fs::read_symlink(link), third.device()) << "a link that a dead board has left is replaced";
}

TEST(BoardOnPty, IdlesWithAndWithoutALoader) {
    Program program({"--power-on-delay", "0"});
    const std::string device = program.device();
    {
        const Port port(device);
        EXPECT_EQ(port.hear("555"), "555") << "bytes at their time, no more and no less";
    }
    EXPECT_EQ(program.end(), 0);
    EXPECT_LT(program.processorTime, 100ms);
}
