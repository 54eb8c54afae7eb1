#include "board/FrameReader.h"

#include "board/Text.h"

namespace zrkboard {

namespace {

std::string describe(Allowed allowed) {
    if (allowed.low == allowed.high)
        return hex(allowed.low, 2);
    return hex(allowed.low, 2) + " to " + hex(allowed.high, 2);
}

} // namespace

bool FrameReader::inPayload() const {
    return m_offset >= m_layout.head.size() && m_offset < m_layout.head.size() + m_layout.payload;
}

FrameReader::Event FrameReader::receive(std::uint8_t byte) {
    const std::uint64_t tailStart = m_layout.head.size() + m_layout.payload;
    const std::uint64_t offset = m_offset;
    if (!inPayload()) {
        const Allowed allowed = offset < tailStart
                                    ? m_layout.head[offset]
                                    : m_layout.tail[static_cast<std::size_t>(offset - tailStart)];
        if (byte < allowed.low || byte > allowed.high) {
            m_complaint = m_layout.name + " frame: offset " + std::to_string(offset) + ", expected " +
                          describe(allowed) + ", got " + hex(byte, 2);
            return Event::Wrong;
        }
        m_bytes.push_back(byte);
    }
    ++m_offset;
    return m_offset == tailStart + m_layout.tail.size() ? Event::Complete : Event::None;
}

} // namespace zrkboard
