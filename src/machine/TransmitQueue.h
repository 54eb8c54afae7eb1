#pragma once

#include <cstddef>
#include <span>
#include <vector>

namespace zrk {

/// A bounded byte queue with one side that appends and one that hands its front to a device.
///
/// Bytes that were handed over stay in place, and count against the bound, until sent() removes them;
/// appending meanwhile does not move them, so that a device may read them without a lock. The calls
/// themselves need one.
class TransmitQueue {
  public:
    explicit TransmitQueue(std::size_t capacity);

    /// Returns how many bytes append() takes at once.
    [[nodiscard]] std::size_t room() const { return m_capacity - size(); }
    [[nodiscard]] std::size_t size() const { return m_pending.size() + m_front.size() - m_sent; }
    [[nodiscard]] bool isEmpty() const { return size() == 0; }

    /// Appends as much as there is room for; returns how much that was.
    std::size_t append(std::span<const char> bytes);

    /// Returns the bytes to send next, empty if there are none. Valid until sent() is called.
    [[nodiscard]] std::span<const char> front();

    /// Removes the first `count` bytes of front() from the queue.
    void sent(std::size_t count) { m_sent += count; }

  private:
    std::size_t m_capacity;
    std::vector<char> m_front;
    std::size_t m_sent = 0; ///< of m_front
    std::vector<char> m_pending;
};

} // namespace zrk
