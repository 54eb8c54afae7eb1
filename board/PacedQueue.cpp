#include "board/PacedQueue.h"

#include <algorithm>

namespace zrkboard {

void PacedQueue::push(std::span<const std::uint8_t> bytes, TimePoint now) {
    if (m_queue.empty()) {
        m_spellBegan = now;
        m_through = 0;
    }
    m_queue.insert(m_queue.end(), bytes.begin(), bytes.end());
}

std::vector<std::uint8_t> PacedQueue::take(TimePoint now) {
    std::size_t count = m_queue.size();
    if (m_rate != 0) {
        // Split at the second, since nanoseconds times rate would overflow in a long spell.
        const auto spell = std::max(Duration::zero(), now - m_spellBegan);
        const auto seconds = std::chrono::floor<std::chrono::seconds>(spell);
        const auto rest = std::chrono::duration_cast<std::chrono::nanoseconds>(spell - seconds);
        const std::uint64_t through = static_cast<std::uint64_t>(seconds.count()) * m_rate +
                                      static_cast<std::uint64_t>(rest.count()) * m_rate / 1'000'000'000ULL;
        count = static_cast<std::size_t>(
            std::min<std::uint64_t>(count, std::max(through, m_through) - m_through));
    }
    const auto end = m_queue.begin() + static_cast<std::ptrdiff_t>(count);
    std::vector<std::uint8_t> bytes(m_queue.begin(), end);
    m_queue.erase(m_queue.begin(), end);
    m_through += count;
    return bytes;
}

std::optional<TimePoint> PacedQueue::nextThrough() const {
    if (m_queue.empty())
        return std::nullopt;
    return throughAt(m_through + 1);
}

std::optional<TimePoint> PacedQueue::allThrough() const {
    if (m_queue.empty())
        return std::nullopt;
    return throughAt(m_through + m_queue.size());
}

TimePoint PacedQueue::throughAt(std::uint64_t count) const {
    if (m_rate == 0)
        return m_spellBegan;
    // Rounded up: at that time the byte is through, not about to be.
    const std::uint64_t nanoseconds = (count * 1'000'000'000ULL + m_rate - 1) / m_rate;
    return m_spellBegan + std::chrono::nanoseconds(nanoseconds);
}

} // namespace zrkboard
