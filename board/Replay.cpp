#include "board/Replay.h"

#include "board/Text.h"

#include <algorithm>
#include <utility>

namespace zrkboard {

namespace {

constexpr std::size_t kMostTold = 10;

// A loader empties its port after it has opened it; what comes before that would be lost.
constexpr auto kOpening = std::chrono::milliseconds(100);
// A replay does not wait as long as the user took to switch the power on.
constexpr auto kLongestOpening = std::chrono::seconds(2);

// The times at which the traced loader's line was through with each byte.
class TracedLine {
  public:
    explicit TracedLine(std::uint32_t rate)
        : m_byteTime(rate == 0 ? std::chrono::nanoseconds::zero()
                               : std::chrono::nanoseconds(1'000'000'000 / rate)) {}

    void opened(Duration at) { m_through = at; }
    void handOver(Duration at) { m_through = std::max(m_through, at) + m_byteTime; }
    [[nodiscard]] Duration through() const { return m_through; }

  private:
    std::chrono::nanoseconds m_byteTime;
    Duration m_through{};
};

} // namespace

Replay::Replay(const std::vector<TraceLine>& trace, std::uint32_t lineRate, DifferenceListener listener)
    : m_sessions(sessionsOf(trace, lineRate)), m_listener(std::move(listener)) {}

std::vector<Replay::Session> Replay::sessionsOf(const std::vector<TraceLine>& trace, std::uint32_t lineRate) {
    std::vector<Session> sessions;
    TracedLine line(lineRate);
    bool lost = false;
    for (const TraceLine& entry : trace) {
        if (entry.kind == TraceLine::Kind::Opened) {
            sessions.emplace_back().line = entry.number;
            line.opened(entry.at);
            lost = false;
            continue;
        }
        Session& session = sessions.back();
        switch (entry.kind) {
        case TraceLine::Kind::ToBoard:
            if (lost)
                break; // the loader never read it
            for (const std::uint8_t byte : entry.bytes) {
                session.expected.push_back(byte);
                session.lines.push_back(entry.number);
                line.handOver(entry.at);
            }
            break;
        case TraceLine::Kind::FromBoard:
        case TraceLine::Kind::Lost:
            lost = entry.kind == TraceLine::Kind::Lost;
            session.answers.push_back({session.expected.size(),
                                       std::max(Duration::zero(), Duration(entry.at) - line.through()),
                                       entry.bytes, entry.kind == TraceLine::Kind::Lost});
            break;
        default:
            session.unsent = std::min(entry.unsent, session.expected.size());
        }
    }
    return sessions;
}

const Replay::Session* Replay::session() const {
    return m_open && !isOver() ? &m_sessions[m_session] : nullptr;
}

void Replay::powerOn(TimePoint /*now*/) {
    ++m_powerOns;
    m_hungUp = false;
}

void Replay::portOpened(TimePoint now) {
    m_open = true;
    m_received = 0;
    m_answered = 0;
    m_inStep = true;
    schedule(now);
}

void Replay::portClosed(TimePoint /*now*/) {
    if (std::exchange(m_open, false))
        endSession();
}

void Replay::endSession() {
    if (isOver())
        return;
    const Session& session = m_sessions[m_session++];
    m_outbox.clear();
    m_hangUpAt.reset();
    if (m_received + session.unsent < session.expected.size())
        differs("the loader closed the port after " + std::to_string(m_received) + " bytes, and line " +
                std::to_string(session.lines[m_received]) + " goes on with " +
                byteText(session.expected[m_received]));
}

void Replay::receive(std::span<const std::uint8_t> bytes, TimePoint now) {
    for (const std::uint8_t byte : bytes) {
        advance(now);
        if (m_hungUp)
            return;
        take(byte);
        schedule(now);
    }
}

void Replay::take(std::uint8_t byte) {
    const Session* const current = session();
    const std::size_t offset = m_received;
    const bool known = current != nullptr && offset < current->expected.size();
    const bool right = known && current->expected[offset] == byte;
    if (known)
        ++m_received;
    if (right) {
        m_inStep = true;
        return;
    }
    const std::string got = ", got " + byteText(byte);
    if (std::exchange(m_inStep, false))
        differs(known
                    ? "byte " + std::to_string(offset) + " (line " + std::to_string(current->lines[offset]) +
                          "): expected " + byteText(current->expected[offset]) + got
                    : "byte " + std::to_string(offset) + ": expected nothing more" + got);
}

void Replay::differs(const std::string& what) {
    if (m_differences++ == 0)
        m_first = what;
    if (m_differences <= kMostTold)
        m_listener(what);
}

// Gives a time to the answers that waited for the bytes up to here.
void Replay::schedule(TimePoint now) {
    const Session* const current = session();
    while (current != nullptr && m_answered < current->answers.size() &&
           current->answers[m_answered].after <= m_received) {
        const Answer& answer = current->answers[m_answered++];
        const auto pause =
            answer.after == 0 ? std::clamp<Duration>(answer.delay, kOpening, kLongestOpening) : answer.delay;
        const auto due = now + pause;
        if (answer.hangsUp)
            m_hangUpAt = due;
        else
            m_outbox.push(answer.bytes, due);
    }
}

void Replay::advance(TimePoint now) {
    if (m_hungUp)
        return;
    m_outbox.release(now);
    for (const TimedBytes& piece : m_outbox.take())
        m_output.insert(m_output.end(), piece.bytes.begin(), piece.bytes.end());
    if (m_hangUpAt && *m_hangUpAt <= now)
        hangUp("as in the trace");
}

std::optional<TimePoint> Replay::nextDeadline() const {
    const auto due = m_outbox.nextDue();
    return due && m_hangUpAt ? std::min(*due, *m_hangUpAt) : due ? due : m_hangUpAt;
}

std::vector<std::uint8_t> Replay::takeOutput() {
    return std::exchange(m_output, {});
}

void Replay::hangUp(const std::string& /*why*/) {
    m_hungUp = true;
    portClosed({});
}

std::string Replay::difference() const {
    if (m_differences > 0)
        return "the loader differed from the trace in " + std::to_string(m_differences) +
               " places, first here: " + m_first;
    if (isOver())
        return "";
    return "the trace was not replayed to its end: its session of line " +
           std::to_string(m_sessions[m_session].line) +
           (m_open ? " is not closed, with " + std::to_string(m_received) + " of " +
                         std::to_string(m_sessions[m_session].expected.size()) + " bytes received"
                   : " was not begun");
}

} // namespace zrkboard
