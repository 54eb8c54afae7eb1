#pragma once

#include "simulation/LinePort.h"

namespace zrktest {

// The machine under a loader that is tested.
using zrksim::Duration;
using zrksim::LinePort;
using zrksim::StuckLoop;
using zrksim::TimePoint;
using zrksim::VirtualEventLoop;

/// An act of the far end: once it has got `when` after the bytes that ended the step before it, it sends
/// `answer` after `delay`. An empty `when` waits for nothing: as the first step, for the port to open.
struct Step {
    QByteArray when;
    QByteArray answer;
    VirtualEventLoop::Action action = nullptr; ///< runs when the answer, or its first byte, arrives
    Duration delay = std::chrono::milliseconds(20);
};

/// A port whose far end follows a script, which restarts at each open.
class ScriptedPort final : public LinePort {
  public:
    using LinePort::LinePort;

    std::vector<Step> steps;
    bool oneByOne = false; ///< the bytes of an answer arrive one by one, a millisecond apart

    /// Follows other steps from now on.
    void follow(std::vector<Step> next);

  private:
    void opened() override {
        ++m_run;
        follow(steps);
    }
    void send(const QByteArray& bytes, TimePoint when);
    void delivered(char byte, TimePoint when) override;
    void answer(const Step& step, TimePoint when);

    std::size_t m_next = 0;
    unsigned m_run = 0; ///< an answer of an earlier run does not reach a later one
    QByteArray m_got;
};

} // namespace zrktest
