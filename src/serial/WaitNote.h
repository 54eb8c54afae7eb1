#pragma once

#include "serial/SharedState.h"

namespace zrk {

/// Notes, as long as it lives, what an operation without a time limit waits for, so that whoever shows the
/// state can tell.
class WaitNote {
  public:
    WaitNote(SharedState& state, const QString& what, std::chrono::steady_clock::time_point now)
        : m_state(state) {
        m_state.WaitingFor = what;
        m_state.WaitingSince = now;
    }
    ~WaitNote() { m_state.WaitingFor.clear(); }
    WaitNote(const WaitNote&) = delete;
    WaitNote& operator=(const WaitNote&) = delete;

  private:
    SharedState& m_state;
};

} // namespace zrk
