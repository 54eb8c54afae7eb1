#include "AckLine.h"

#include <algorithm>
#include <optional>
#include <poll.h>
#include <utility>

namespace zrkbench {

using namespace std::chrono_literals;

namespace {

constexpr std::uint32_t kLineRate = 11520;
constexpr std::size_t kDriverBuffer = 4096;
constexpr std::uint8_t kAck = 0x06;
constexpr std::uint8_t kNak = 0x15;
constexpr auto kLook = 50ms; // for the end

} // namespace

AckLine::AckLine(std::size_t blockSize, Check check, std::chrono::milliseconds adapterLatency)
    : m_blockSize(blockSize), m_check(std::move(check)), m_toFarEnd(kLineRate), m_toSender(kLineRate),
      m_adapter(adapterLatency), m_thread([this] { run(); }) {}

AckLine::~AckLine() {
    m_over = true;
    m_thread.join();
}

void AckLine::run() {
    while (!m_over) {
        wait();
        const auto now = zrkboard::Clock::now();
        m_toFarEnd.push(m_terminal.read(kDriverBuffer), now);
        for (const std::uint8_t byte : m_toFarEnd.take(now)) {
            m_block.push_back(byte);
            if (m_block.size() == m_blockSize) {
                const std::uint8_t answer = m_check(std::exchange(m_block, {})) ? kAck : kNak;
                m_toSender.push({&answer, 1}, now);
            }
        }
        m_adapter.push(m_toSender.take(now), now);
        (void)m_terminal.write(m_adapter.take(now));
    }
}

/// Blocks until a byte is written or one is through; of a block's bytes the last one counts.
void AckLine::wait() const {
    auto wake = zrkboard::Clock::now() + kLook;
    for (const auto& time : {m_toFarEnd.allThrough(), m_toSender.nextThrough(), m_adapter.nextThrough()}) {
        if (time)
            wake = std::min(wake, *time);
    }
    const auto left = std::max(0ns, std::chrono::nanoseconds(wake - zrkboard::Clock::now()));
    const timespec timeout{left.count() / 1'000'000'000, left.count() % 1'000'000'000};
    pollfd fd{m_terminal.masterFd(), POLLIN, 0};
    (void)::ppoll(&fd, 1, &timeout, nullptr);
}

} // namespace zrkbench
