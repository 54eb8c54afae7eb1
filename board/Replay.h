#pragma once

#include "board/FarEnd.h"
#include "board/Outbox.h"
#include "board/Trace.h"

#include <functional>
#include <string>
#include <vector>

namespace zrkboard {

// A far end that answers as the board in a trace did. Each opening of the port is a session. An answer comes
// when as many bytes have been received as the loader had sent before it in the trace, and as long after the
// last of them; what the loader handed over ahead of the line is taken into account.
//
// A byte that differs is reported and counts as the expected one, so that another image of the same length
// does no harm. A missing byte leaves the loader waiting, as a lost one does. A session that the loader
// closes early is reported, and the next opening begins the next session.
class Replay final : public FarEnd {
  public:
    using DifferenceListener = std::function<void(const std::string&)>;

    // Takes `lineRate` in bytes a second, 0 for no line. `listener` gets each difference, at most a handful.
    Replay(const std::vector<TraceLine>& trace, std::uint32_t lineRate, DifferenceListener listener);

    void powerOn(TimePoint now) override;
    [[nodiscard]] unsigned powerOns() const override { return m_powerOns; }
    void receive(std::span<const std::uint8_t> bytes, TimePoint now) override;
    void advance(TimePoint now) override;
    [[nodiscard]] std::optional<TimePoint> nextDeadline() const override;
    [[nodiscard]] std::vector<std::uint8_t> takeOutput() override;
    void portOpened(TimePoint now) override;
    void portClosed(TimePoint now) override;
    void hangUp(const std::string& why) override;
    [[nodiscard]] bool hungUp() const override { return m_hungUp; }
    // Is a state in which the user leaves the power alone: the trace decides what happens.
    [[nodiscard]] State state() const override { return m_hungUp ? State::HungUp : State::Announcing; }
    [[nodiscard]] bool isOver() const override { return m_session == m_sessions.size(); }

    // Returns the differences from the trace so far; empty if there were none and the trace is at its end.
    [[nodiscard]] std::string difference() const;

  private:
    struct Answer {
        std::size_t after = 0; // bytes of the loader in this session
        Duration delay{};      // after the last of them
        std::vector<std::uint8_t> bytes;
        bool hangsUp = false;
    };
    struct Session {
        std::size_t line = 0;
        std::vector<std::uint8_t> expected;
        std::vector<std::size_t> lines; // that each expected byte stands in
        std::size_t unsent = 0;         // of these at the end
        std::vector<Answer> answers;
    };

    [[nodiscard]] static std::vector<Session> sessionsOf(const std::vector<TraceLine>& trace,
                                                         std::uint32_t lineRate);
    [[nodiscard]] const Session* session() const;
    void take(std::uint8_t byte);
    void schedule(TimePoint now);
    void endSession();
    void differs(const std::string& what);

    std::vector<Session> m_sessions;
    DifferenceListener m_listener;
    std::size_t m_session = 0; // the one that runs or will run next
    bool m_open = false;
    std::size_t m_received = 0; // in this session
    std::size_t m_answered = 0; // answers whose time is known
    bool m_inStep = true;       // the last byte was as expected
    Outbox m_outbox;
    std::vector<std::uint8_t> m_output;
    std::optional<TimePoint> m_hangUpAt;
    bool m_hungUp = false;
    unsigned m_powerOns = 0;
    std::size_t m_differences = 0;
    std::string m_first;
};

} // namespace zrkboard
