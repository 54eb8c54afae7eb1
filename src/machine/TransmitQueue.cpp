#include "machine/TransmitQueue.h"

#include <algorithm>

namespace zrk {

TransmitQueue::TransmitQueue(std::size_t capacity) : m_capacity(capacity) {
    m_front.reserve(capacity);
    m_pending.reserve(capacity);
}

std::size_t TransmitQueue::append(std::span<const char> bytes) {
    const auto taken = bytes.first(std::min(bytes.size(), room()));
    m_pending.insert(m_pending.end(), taken.begin(), taken.end());
    return taken.size();
}

std::span<const char> TransmitQueue::front() {
    if (m_sent == m_front.size()) {
        m_front.clear();
        m_sent = 0;
        m_front.swap(m_pending);
    }
    return std::span<const char>(m_front).subspan(m_sent);
}

} // namespace zrk
