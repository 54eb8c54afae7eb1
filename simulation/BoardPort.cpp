#include "simulation/BoardPort.h"

#include <array>

namespace zrksim {

BoardPort::BoardPort(VirtualEventLoop& loop, const zrkboard::BoardOptions& options,
                     const zrkboard::WireFaults& faults)
    : LinePort(loop), board(options), wire(board, faults) {
    paced = true;
}

void BoardPort::powerOn() {
    m_boardTime = std::max(m_boardTime, m_loop.now());
    wire.powerOn(m_boardTime);
    carry();
}

void BoardPort::delivered(char byte, TimePoint when) {
    m_boardTime = std::max(m_boardTime, when);
    wire.receive(std::array{static_cast<std::uint8_t>(byte)}, m_boardTime);
    carry();
}

void BoardPort::opened() {
    m_boardTime = std::max(m_boardTime, m_loop.now());
    wire.portOpened(m_boardTime);
}

void BoardPort::closed() {
    wire.portClosed(m_boardTime);
}

/// Takes what the board has sent, and schedules its next event.
void BoardPort::carry() {
    for (const std::uint8_t byte : wire.takeOutput()) {
        heard += static_cast<char>(byte);
        receive(QByteArray(1, static_cast<char>(byte)));
    }
    m_loop.wake();
    if (wire.hungUp())
        hangUp();
    if (m_next)
        m_loop.cancel(*m_next);
    m_next.reset();
    if (const auto deadline = wire.nextDeadline())
        m_next = m_loop.schedule(*deadline, [this] {
            m_next.reset();
            m_boardTime = std::max(m_boardTime, m_loop.now());
            wire.advance(m_boardTime);
            carry();
        });
}

} // namespace zrksim
