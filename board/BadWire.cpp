#include "board/BadWire.h"

#include "board/Text.h"

#include <algorithm>
#include <array>

namespace zrkboard {

BadWire::BadWire(FarEnd& board, const WireFaults& faults, unsigned faultyRuns)
    : m_board(board), m_faultyRuns(faultyRuns), m_seed(faults.seed),
      m_toBoard(faults.seed, 1, faults.toBoard), m_toLoader(faults.seed, 2, faults.toLoader) {}

void BadWire::powerOn(TimePoint now) {
    m_now = now;
    m_board.powerOn(now);
}

void BadWire::receive(std::span<const std::uint8_t> bytes, TimePoint now) {
    advance(now);
    for (const std::uint8_t byte : bytes) {
        if (hungUp() || !carry(byte, m_toBoard, true, m_boardBound))
            return;
        // One by one: the board has this byte before the next one's fault is reported.
        advance(now);
    }
}

void BadWire::advance(TimePoint now) {
    while (!m_boardBound.empty() && m_boardBound.front().when <= now) {
        const Arrival arrival = std::move(m_boardBound.front());
        m_boardBound.pop_front();
        m_board.receive(arrival.bytes, arrival.when);
    }
    m_board.advance(now);
    m_now = now;
    collect();
}

// Puts what the board has sent on its way.
void BadWire::collect() {
    const auto said = m_board.takeOutput();
    if (!m_open)
        return;
    for (const std::uint8_t byte : said) {
        if (!carry(byte, m_toLoader, false, m_loaderBound))
            return;
    }
}

// Returns false if the adapter is gone.
bool BadWire::carry(std::uint8_t byte, BadDirection& direction, bool toBoard, Way& way) {
    TimePoint when = way.empty() ? m_now : std::max(m_now, way.back().when);
    if (!isBad()) {
        way.push_back({when, {byte}});
        return true;
    }
    const std::uint64_t position = direction.position();
    auto passed = direction.pass(byte);
    if (passed.fault) {
        if (m_listener)
            m_listener(toBoard, position, byte, *passed.fault);
        if (m_log)
            m_log(m_now, std::string("wire: ") + std::string(wireFaultName(*passed.fault)) + " at byte " +
                             std::to_string(position + 1) +
                             (toBoard ? " to the board, " : " to the loader, ") + byteText(byte));
        if (*passed.fault == WireFault::HangUp) {
            hangUp("as the wire's faults demand");
            return false;
        }
    }
    when += passed.delay;
    if (!passed.bytes.empty())
        way.push_back({when, std::move(passed.bytes)});
    return true;
}

std::optional<TimePoint> BadWire::nextDeadline() const {
    auto next = m_board.nextDeadline();
    for (const Way* way : {&m_boardBound, &m_loaderBound}) {
        if (!way->empty() && (!next || way->front().when < *next))
            next = way->front().when;
    }
    return next;
}

std::vector<std::uint8_t> BadWire::takeOutput() {
    std::vector<std::uint8_t> arrived;
    while (!m_loaderBound.empty() && m_loaderBound.front().when <= m_now) {
        const auto& bytes = m_loaderBound.front().bytes;
        arrived.insert(arrived.end(), bytes.begin(), bytes.end());
        m_loaderBound.pop_front();
    }
    return arrived;
}

void BadWire::portOpened(TimePoint now) {
    advance(now);
    m_open = true;
    m_board.portOpened(now);
}

void BadWire::portClosed(TimePoint now) {
    m_open = false;
    m_loaderBound.clear();
    m_board.portClosed(now);
}

void BadWire::hangUp(const std::string& why) {
    m_boardBound.clear();
    m_loaderBound.clear();
    m_board.hangUp(why);
}

std::string BadWire::summary() const {
    return "faults of seed " + std::to_string(m_seed) + ": to the board " + m_toBoard.summary() +
           "; to the loader " + m_toLoader.summary();
}

} // namespace zrkboard
