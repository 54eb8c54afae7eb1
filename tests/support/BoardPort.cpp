#include "support/BoardPort.h"

namespace zrktest {

BoardPort::BoardPort(VirtualEventLoop& loop, const zrkboard::BoardOptions& options)
    : LinePort(loop), board(options) {
    paced = true;
}

void BoardPort::powerOn() {
    m_boardTime = std::max(m_boardTime, m_loop.now());
    board.powerOn(m_boardTime);
    carry();
}

void BoardPort::delivered(char byte, TimePoint when) {
    m_boardTime = std::max(m_boardTime, when);
    board.receive(static_cast<std::uint8_t>(byte), m_boardTime);
    carry();
}

/// Takes what the board has sent and sees to it that what it does next happens in time.
void BoardPort::carry() {
    for (const std::uint8_t byte : board.takeOutput())
        receive(QByteArray(1, static_cast<char>(byte)));
    m_loop.wake();
    if (board.hungUp())
        hangUp();
    if (m_next)
        m_loop.cancel(*m_next);
    m_next.reset();
    if (const auto deadline = board.nextDeadline())
        m_next = m_loop.schedule(*deadline, [this] {
            m_next.reset();
            m_boardTime = std::max(m_boardTime, m_loop.now());
            board.advance(m_boardTime);
            carry();
        });
}

} // namespace zrktest
