#pragma once

#include "controls/SharedState.h"

namespace zrk {

/// A note of what an operation without a time limit waits for, for the status display. It is cleared with
/// this object.
class PendingWait {
  public:
    PendingWait(SharedState& state, Awaited kind, const QString& what,
                std::chrono::steady_clock::time_point now)
        : m_state(state) {
        m_state.WaitingFor = what;
        m_state.WaitingKind = kind;
        m_state.WaitingSince = now;
    }
    ~PendingWait() { m_state.WaitingFor.clear(); }
    PendingWait(const PendingWait&) = delete;
    PendingWait& operator=(const PendingWait&) = delete;

  private:
    SharedState& m_state;
};

} // namespace zrk
