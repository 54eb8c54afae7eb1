#include "Benches.h"
#include "FigureTable.h"
#include "QuietLoader.h"
#include "Samples.h"
#include "board/program/FileDescriptor.h"
#include "board/program/PseudoTerminal.h"

#include <atomic>
#include <chrono>
#include <fcntl.h>
#include <poll.h>
#include <random>
#include <semaphore>
#include <stdexcept>
#include <thread>
#include <unistd.h>

namespace zrkbench {
namespace {

using Clock = std::chrono::steady_clock;

// They take turns, so that both meet the same load of the machine.
constexpr int kRounds = 10;
constexpr int kSamplesARound = 200;

/// A board that sends one byte some time after a request.
class LateSpeaker {
  public:
    [[nodiscard]] QString device() const { return QString::fromStdString(m_terminal.devicePath()); }

    void ask() { m_asked.release(); }

    /// Returns the seconds since it sent its last byte.
    [[nodiscard]] double since() const {
        return std::chrono::duration<double>(Clock::now().time_since_epoch() - m_said.load()).count();
    }

  private:
    void run(const std::stop_token& over) {
        std::mt19937 random(1); // NOLINT: the same pauses in every run
        std::uniform_int_distribution<int> pause(500, 3000);
        for (m_asked.acquire(); !over.stop_requested(); m_asked.acquire()) {
            // Long enough for the requester to be asleep when the byte comes.
            std::this_thread::sleep_for(std::chrono::microseconds(pause(random)));
            m_said = Clock::now().time_since_epoch();
            const std::uint8_t byte = 'x';
            (void)m_terminal.write({&byte, 1});
        }
    }

    zrkboard::PseudoTerminal m_terminal;
    std::counting_semaphore<> m_asked{0};
    std::atomic<Clock::duration> m_said{};
    std::jthread m_thread{[this](const std::stop_token& over) {
        const std::stop_callback end(over, [this] { m_asked.release(); });
        run(over);
    }};
};

void addReadChar(Samples& samples) {
    LateSpeaker board;
    QuietLoader quiet(board.device());
    zrk::Loader& loader = quiet.loader();
    loader.port.OpenComPort();
    for (int i = 0; i < kSamplesARound; ++i) {
        board.ask();
        if (loader.transport.ReadChar() != QLatin1String("x"))
            throw std::runtime_error("the received byte differs from the sent one");
        samples.add(board.since());
    }
}

void addPlainRead(Samples& samples) {
    LateSpeaker board;
    const zrkboard::FileDescriptor port(
        ::open(board.device().toLocal8Bit().constData(), O_RDONLY | O_NOCTTY | O_CLOEXEC));
    for (int i = 0; i < kSamplesARound; ++i) {
        char byte = 0;
        board.ask();
        pollfd ready{port.get(), POLLIN, 0};
        if (::poll(&ready, 1, 5000) != 1 || ::read(port.get(), &byte, 1) != 1)
            throw std::runtime_error("the pseudo-terminal is silent");
        samples.add(board.since());
    }
}

} // namespace

void benchReaction() {
    Samples ours;
    Samples plain;
    for (int round = 0; round < kRounds; ++round) {
        addReadChar(ours);
        addPlainRead(plain);
    }
    const auto row = [](const char* which, double value, double peer) {
        FigureTable::compared(std::string("received byte to reaction, ") + which, timeText(value),
                              timeText(peer) + " (plain poll and read)", value / peer);
    };
    constexpr double kMost = 0.99;
    row("median", ours.median(), plain.median());
    row("p99", ours.quantile(kMost), plain.quantile(kMost));
}

} // namespace zrkbench
