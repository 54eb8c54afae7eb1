#include "board/program/BoardProgram.h"

#include "board/program/FileDescriptor.h"
#include "board/program/FileMemory.h"
#include "board/program/MemoryDump.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <fcntl.h>
#include <filesystem>
#include <poll.h>
#include <sstream>
#include <stdexcept>
#include <sys/stat.h>
#include <utility>

namespace zrkboard {

namespace {

// The driver's buffer of 4 KiB. The loader may write while it is less than half full: that leaves room for
// what it writes before the stop reaches it, and keeps the line busy. On a busy machine it can fill the
// pseudo-terminal before this program runs. What the buffer has no room for stays there, so the loader is
// never further ahead of the line than both hold.
constexpr std::size_t kDriverBuffer = 4096;
constexpr std::size_t kHalfFull = kDriverBuffer / 2;

// Streaming bytes are passed on in batches; waking up for each one would cost a core.
constexpr auto kStreamingInterval = std::chrono::milliseconds(2);

// What an adapter keeps for a loader that does not read.
constexpr std::size_t kMostDelivered = 64ULL * 1024;

// Finds this out now and not after an hour's work. One file for two memories would lose one of them.
void checkFiles(const ProgramOptions& options) {
    std::vector<std::filesystem::path> taken;
    for (const auto& file : {options.nandFile, options.sdramDump, options.iramDump}) {
        if (!file)
            continue;
        if (file != options.nandFile)
            checkDumpFile(*file);
        const auto path = std::filesystem::weakly_canonical(*file);
        if (std::find(taken.begin(), taken.end(), path) != taken.end())
            throw std::runtime_error(*file + " is named for two memories; give each a file of its own");
        taken.push_back(path);
    }
}

Nand makeNand(const ProgramOptions& options) {
    checkFiles(options);
    if (!options.nandFile)
        return Nand();
    return Nand(std::make_unique<FileMemory>(*options.nandFile, kNandSize, 0xFF));
}

// Opening never waits for another process, as a pipe would.
std::string readTraceFile(const std::string& path) {
    const FileDescriptor file(::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
    struct stat status {};
    if (!file.isOpen() || ::fstat(file.get(), &status) != 0)
        throw std::runtime_error(path + ": cannot read the trace: " + std::strerror(errno));
    if (!S_ISREG(status.st_mode))
        throw std::runtime_error(path + ": cannot read the trace: it is not a regular file");
    std::string text;
    std::array<char, 65536> part{};
    for (ssize_t count = 1; count > 0;) {
        count = ::read(file.get(), part.data(), part.size());
        if (count < 0)
            throw std::runtime_error(path + ": cannot read the trace: " + std::strerror(errno));
        text.append(part.data(), static_cast<std::size_t>(count));
    }
    return text;
}

std::unique_ptr<Replay> makeReplay(const ProgramOptions& options, std::ostream& log) {
    if (!options.replayFile)
        return nullptr;
    constexpr std::uint32_t kTracedLine = 11520; // bytes a second, which the loader's hand-over ran ahead of
    std::istringstream file(readTraceFile(*options.replayFile));
    try {
        return std::make_unique<Replay>(readTrace(file), kTracedLine, [&log](const std::string& what) {
            log << "differs from the trace: " << what << std::endl;
        });
    } catch (const std::invalid_argument& error) {
        throw std::runtime_error(*options.replayFile + ", " + error.what());
    }
}

std::unique_ptr<BadWire> makeWire(const ProgramOptions& options, Board& board) {
    if (!options.wireFaults)
        return nullptr;
    return std::make_unique<BadWire>(board, *options.wireFaults, options.board.faultyRuns);
}

template <typename... Times>
std::optional<TimePoint> earliest(Times... times) {
    std::optional<TimePoint> first;
    for (const std::optional<TimePoint>& time : {std::optional<TimePoint>(times)...}) {
        if (time && (!first || *time < *first))
            first = time;
    }
    return first;
}

} // namespace

BoardProgram::BoardProgram(ProgramOptions options, std::ostream& out, std::ostream& log)
    : m_options(std::move(options)), m_out(out), m_log(log), m_board(m_options.board, makeNand(m_options)),
      m_replay(makeReplay(m_options, log)), m_wire(makeWire(m_options, m_board)),
      m_end(m_wire     ? static_cast<FarEnd&>(*m_wire)
            : m_replay ? static_cast<FarEnd&>(*m_replay)
                       : m_board),
      m_powerUser(m_options.patience), m_toBoard(m_options.lineRate), m_toLoader(m_options.lineRate),
      m_adapterBuffer(m_options.adapterLatency) {
    if (m_options.verbose)
        m_board.setLog([this](TimePoint when, const std::string& what) { this->log(when, what); });
    if (m_options.verbose && m_wire)
        m_wire->setLog([this](TimePoint when, const std::string& what) { this->log(when, what); });
    plugIn();
}

void BoardProgram::run() {
    if (!m_options.off)
        m_end.powerOn(Clock::now());
    while (!m_done) {
        waitForSomething();
        service(Clock::now());
    }
    m_adapter.reset();
    if (m_wire)
        m_log << "zrk-board: " << m_wire->summary() << std::endl;
    if (m_options.sdramDump)
        dumpMemory(m_board.sdram(), *m_options.sdramDump);
    if (m_options.iramDump)
        dumpMemory(m_board.iram(), *m_options.iramDump);
    if (m_replay && !m_replay->difference().empty())
        throw std::runtime_error(m_replay->difference());
}

void BoardProgram::plugIn() {
    m_adapter = std::make_unique<Adapter>();
    const std::string& device = m_adapter->terminal.devicePath();
    if (m_options.link)
        m_adapter->link = std::make_unique<DeviceLink>(*m_options.link, device);
    m_out << device << std::endl;
}

void BoardProgram::unplug(TimePoint now) {
    m_adapter.reset();
    m_powerUser.loaderClosed();
    m_toBoard.clear();
    m_toLoader.clear();
    m_adapterBuffer.clear();
    m_delivered.clear();
    m_replugAt = now + m_options.replugDelay;
}

std::optional<TimePoint> BoardProgram::nextWake(TimePoint now) const {
    std::optional<TimePoint> streaming;
    if (const auto next = m_toBoard.nextThrough())
        streaming = std::max(*next, std::min(*m_toBoard.allThrough(), now + kStreamingInterval));
    if (const auto next = m_toLoader.nextThrough())
        streaming = earliest(streaming,
                             std::max(*next, std::min(*m_toLoader.allThrough(), now + kStreamingInterval)));
    return earliest(streaming, m_end.nextDeadline(), m_powerUser.nextLook(now), m_replugAt,
                    m_adapterBuffer.nextThrough());
}

void BoardProgram::waitForSomething() {
    std::array<pollfd, 3> fds{{{m_signals.fd(), POLLIN, 0}, {-1, POLLIN, 0}, {-1, POLLIN, 0}}};
    if (m_adapter) {
        fds[1].fd = m_adapter->use.fd();
        fds[2].fd = m_adapter->terminal.masterFd();
        if (m_toBoard.size() >= kDriverBuffer)
            fds[2].events = 0;
        if (!m_delivered.empty())
            fds[2].events |= POLLOUT;
    }
    const TimePoint now = Clock::now();
    const auto wake = nextWake(now);
    timespec timeout{};
    if (wake) {
        const auto wait = std::max(std::chrono::nanoseconds::zero(),
                                   std::chrono::duration_cast<std::chrono::nanoseconds>(*wake - now));
        timeout.tv_sec = static_cast<time_t>(wait.count() / 1'000'000'000);
        timeout.tv_nsec = static_cast<long>(wait.count() % 1'000'000'000);
    }
    (void)::ppoll(fds.data(), fds.size(), wake ? &timeout : nullptr, nullptr);
}

void BoardProgram::service(TimePoint now) {
    obeySignals(now);
    if (!m_adapter && m_replugAt && now >= *m_replugAt) {
        m_replugAt.reset();
        plugIn();
        m_end.powerOn(now);
    }
    if (m_adapter) {
        noticeLoader(now);
        moveToBoard(now);
        endUse(now);
        moveToLoader(now);
        operatePower(now);
    }
}

void BoardProgram::obeySignals(TimePoint now) {
    for (auto wish = m_signals.take(); wish != SignalInput::Wish::None; wish = m_signals.take()) {
        if (wish == SignalInput::Wish::End)
            m_done = true;
        else if (!m_adapter)
            continue;
        else if (wish == SignalInput::Wish::PowerCycle)
            endRun("power switched off by hand", now);
        else
            m_end.hangUp("by hand");
    }
}

void BoardProgram::noticeLoader(TimePoint now) {
    const auto change = m_adapter->use.update();
    if (change.closed) {
        log(now, "line: closed by the loader");
        m_powerUser.loaderClosed();
        m_useEnds = true;
        m_toLoader.clear();
        m_adapterBuffer.clear();
        m_delivered.clear();
        // Not if the next loader is there already: it would lose its exclusive use.
        if (!m_adapter->use.inUse())
            m_adapter->terminal.forgetLoader();
    }
    if (change.opened && m_adapter->use.inUse()) {
        log(now, "line: opened by a loader");
        m_powerUser.loaderOpened(now);
        if (std::exchange(m_useEnds, false))
            m_end.portClosed(now);
        m_end.portOpened(now);
    }
}

void BoardProgram::endUse(TimePoint now) {
    if (!m_useEnds || m_adapter->moreToRead || !m_toBoard.empty())
        return;
    m_useEnds = false;
    m_end.portClosed(now);
    m_done = m_done || m_end.isOver();
}

void BoardProgram::moveToBoard(TimePoint now) {
    const std::size_t room = kDriverBuffer - std::min(kDriverBuffer, m_toBoard.size());
    const auto written = m_adapter->terminal.read(room);
    m_adapter->moreToRead = written.size() == room;
    if (!written.empty()) {
        m_powerUser.loaderSpoke();
        m_toBoard.push(written, now);
    }
    m_end.receive(m_toBoard.take(now), now);
    m_end.advance(now);
    m_adapter->terminal.stopLoader(m_adapter->moreToRead || m_toBoard.size() >= kHalfFull);
}

void BoardProgram::moveToLoader(TimePoint now) {
    const auto sent = m_end.takeOutput();
    // A driver keeps no bytes for a port that is closed.
    if (m_adapter->use.inUse())
        m_toLoader.push(sent, now);
    m_adapterBuffer.push(m_toLoader.take(now), now);
    const auto through = m_adapterBuffer.take(now);
    m_delivered.insert(m_delivered.end(), through.begin(), through.end());
    const std::size_t taken = m_delivered.empty() ? 0 : m_adapter->terminal.write(m_delivered);
    m_delivered.erase(m_delivered.begin(), m_delivered.begin() + static_cast<std::ptrdiff_t>(taken));
    if (m_delivered.size() > kMostDelivered) {
        log(now, "line: overrun, the loader does not read");
        m_delivered.clear();
    }
}

void BoardProgram::operatePower(TimePoint now) {
    if (m_end.hungUp()) {
        if (m_options.powerCycles != 0 && m_end.powerOns() >= m_options.powerCycles)
            m_done = true;
        return unplug(now);
    }
    // After a reset the next run has begun already.
    if (m_options.powerCycles != 0 && m_end.powerOns() > m_options.powerCycles)
        m_done = true;
    const bool lineBusy = m_adapter->moreToRead || !m_toBoard.empty() || !m_toLoader.empty() ||
                          !m_adapterBuffer.empty() || !m_delivered.empty();
    if (m_powerUser.wantsPowerCycle({m_end.state(), lineBusy, m_adapter->terminal.inTerminalMode()}, now))
        endRun("power cycled for the next attempt", now);
}

void BoardProgram::endRun(const std::string& why, TimePoint now) {
    log(now, "power: " + why);
    if (m_options.powerCycles != 0 && m_end.powerOns() >= m_options.powerCycles)
        m_done = true;
    else
        m_end.powerOn(now);
}

void BoardProgram::log(TimePoint when, const std::string& what) const {
    if (!m_options.verbose)
        return;
    std::array<char, 32> time{};
    std::snprintf(time.data(), time.size(), "[%10.3f] ",
                  std::chrono::duration<double>(when - m_started).count());
    m_log << time.data() << what << std::endl;
}

} // namespace zrkboard
