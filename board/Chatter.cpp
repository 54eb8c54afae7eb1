#include "board/Chatter.h"

#include <algorithm>
#include <array>
#include <cstdio>

namespace zrkboard {

namespace {

constexpr std::size_t kLineLength = 64;

std::string numberedLine(unsigned number) {
    std::array<char, kLineLength + 1> text{};
    std::snprintf(text.data(), text.size(),
                  "chatter %06u .....................................abcdef0123\r\n", number % 1'000'000);
    return text.data();
}

} // namespace

void Chatter::start(Duration length) {
    m_next = m_chip.now();
    m_end = m_chip.now() + length;
    m_lines = 0;
}

void Chatter::tick() {
    if (m_chip.now() >= m_end) {
        m_next.reset();
        return;
    }
    if (!m_chip.outbox().held())
        m_chip.say(numberedLine(m_lines++));
    // When this line is through.
    const std::chrono::nanoseconds lineTime(1'000'000'000ULL * kLineLength / m_chip.options().lineRate);
    m_next = std::min(*m_next + lineTime, m_end);
}

} // namespace zrkboard
