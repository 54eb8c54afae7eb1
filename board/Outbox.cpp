#include "board/Outbox.h"

#include <algorithm>
#include <utility>

namespace zrkboard {

void Outbox::push(std::vector<std::uint8_t> bytes, TimePoint when) {
    if (bytes.empty())
        return;
    if (!m_pending.empty())
        when = std::max(when, m_pending.back().when);
    m_pending.push_back({when, std::move(bytes)});
}

void Outbox::release(TimePoint now) {
    while (!m_held && !m_pending.empty() && m_pending.front().when <= now) {
        m_released.push_back(std::move(m_pending.front()));
        m_pending.pop_front();
    }
}

std::vector<TimedBytes> Outbox::take() {
    return std::exchange(m_released, {});
}

std::optional<TimePoint> Outbox::nextDue() const {
    if (m_held || m_pending.empty())
        return std::nullopt;
    return m_pending.front().when;
}

void Outbox::clear() {
    m_pending.clear();
    m_held = false;
}

} // namespace zrkboard
