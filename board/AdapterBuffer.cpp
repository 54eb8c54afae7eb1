#include "board/AdapterBuffer.h"

#include <utility>

namespace zrkboard {

namespace {

// A full-speed bulk packet has 64 bytes, two of which are the line's state.
constexpr std::size_t kPacket = 62;

} // namespace

void AdapterBuffer::push(std::span<const std::uint8_t> bytes, TimePoint now) {
    if (m_waiting.empty())
        m_since = now;
    m_waiting.insert(m_waiting.end(), bytes.begin(), bytes.end());
}

std::vector<std::uint8_t> AdapterBuffer::take(TimePoint now) {
    if (m_waiting.empty())
        return {};
    if (now - m_since >= m_latency)
        return std::exchange(m_waiting, {});
    const auto full = static_cast<std::ptrdiff_t>(m_waiting.size() / kPacket * kPacket);
    std::vector<std::uint8_t> bytes(m_waiting.begin(), m_waiting.begin() + full);
    m_waiting.erase(m_waiting.begin(), m_waiting.begin() + full);
    if (!bytes.empty())
        m_since = now; // a packet restarts the timer
    return bytes;
}

std::optional<TimePoint> AdapterBuffer::nextThrough() const {
    if (m_waiting.empty())
        return std::nullopt;
    return m_since + m_latency;
}

} // namespace zrkboard
