#include "board/Board.h"

#include "board/BootRom.h"

#include <algorithm>
#include <array>

namespace zrkboard {

Board::Board(BoardOptions options) : Board(std::move(options), Nand()) {}

Board::Board(BoardOptions options, Nand nand) : m_chip(std::move(options), std::move(nand)) {}

void Board::powerOn(TimePoint now) {
    ++m_powerOns;
    m_received = 0;
    m_code = 0;
    m_hungUp = false;
    m_chip.setNow(now);
    m_chip.restart(m_powerOns);
    m_chip.log("power on, run " + std::to_string(m_powerOns));
    const auto& hangUpAt = m_chip.misbehaviour().hangUpAt;
    m_hangUpAt = hangUpAt ? std::optional(now + *hangUpAt) : std::nullopt;
    m_partner = std::make_unique<BootRom>(m_chip);
}

void Board::receive(std::span<const std::uint8_t> bytes, TimePoint now) {
    for (const std::uint8_t byte : bytes)
        receive(byte, now);
}

void Board::receive(std::uint8_t byte, TimePoint now) {
    advance(now);
    if (!m_partner || m_hungUp)
        return;
    deliver(byte);
    settle();
    m_chip.outbox().release(now);
}

void Board::deliver(std::uint8_t byte) {
    const Misbehaviour& misbehaviour = m_chip.misbehaviour();
    ++m_received;
    const bool isCode = m_partner->expectsCode();
    if (isCode)
        ++m_code;
    if (isCode && misbehaviour.loseCodeByte == m_code)
        m_chip.log("misbehaving: code byte " + std::to_string(m_code) + " is lost");
    else
        m_partner->receive(byte);

    if (misbehaviour.hangUpAfterReceived == m_received)
        hangUp("after " + std::to_string(m_received) + " bytes");
    else if (isCode && misbehaviour.hangUpAfterCode == m_code)
        hangUp("after " + std::to_string(m_code) + " code bytes");
}

void Board::advance(TimePoint now) {
    for (auto next = nextEvent(); next && *next <= now; next = nextEvent()) {
        m_chip.setNow(*next);
        m_chip.outbox().release(*next);
        if (m_hangUpAt && *m_hangUpAt <= *next) {
            hangUp("at its time");
        } else if (const auto deadline = m_partner->deadline(); deadline && *deadline <= *next) {
            m_partner->tick();
            settle();
        }
    }
    m_chip.setNow(now);
    m_chip.outbox().release(now);
}

void Board::settle() {
    if (m_chip.resetRequested() && !m_hungUp) {
        m_chip.log("secondary program: reset");
        m_chip.outbox().release(m_chip.now());
        powerOn(m_chip.now());
        return;
    }
    while (auto next = m_chip.takeNext()) {
        m_partner = std::move(next);
        m_partner->start();
    }
}

void Board::hangUp(const std::string& why) {
    m_chip.log("the line hangs up " + why);
    m_hungUp = true;
    m_hangUpAt.reset();
    m_chip.outbox().clear();
    (void)m_chip.outbox().take();
}

// Looks only at what changes the model by itself: output is released up to any time at once.
std::optional<TimePoint> Board::nextEvent() const {
    if (!m_partner || m_hungUp)
        return std::nullopt;
    const auto deadline = m_partner->deadline();
    if (deadline && m_hangUpAt)
        return std::min(*deadline, *m_hangUpAt);
    return deadline ? deadline : m_hangUpAt;
}

std::optional<TimePoint> Board::nextDeadline() const {
    const auto event = nextEvent();
    const auto due = m_hungUp ? std::nullopt : m_chip.outbox().nextDue();
    if (event && due)
        return std::min(*event, *due);
    return event ? event : due;
}

std::vector<TimedBytes> Board::takeTimedOutput() {
    return m_chip.outbox().take();
}

std::vector<std::uint8_t> Board::takeOutput() {
    std::vector<std::uint8_t> all;
    for (const TimedBytes& piece : takeTimedOutput())
        all.insert(all.end(), piece.bytes.begin(), piece.bytes.end());
    return all;
}

State Board::state() const {
    if (m_hungUp)
        return State::HungUp;
    return m_partner ? m_partner->state() : State::Off;
}

} // namespace zrkboard
