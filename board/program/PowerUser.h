#pragma once

#include "board/Partner.h"
#include "board/Time.h"

#include <optional>

namespace zrkboard {

// The person at the board's power switch. A board does not notice that the loader has stopped, so its power
// is cycled before the next attempt:
// - when the loader has closed the port and the board is stuck in the middle of something or has nothing more
//   to do;
// - when a loader has opened the port, sends nothing, and the board is not waiting at its boot ROM: then the
//   loader waits. In terminal mode the board is left alone.
// A primary boot that waits for commands and a secondary program are left running when the port is closed, so
// that one run of a loader can load and the next one start.
class PowerUser {
  public:
    // With a patience of zero, never cycles because a loader sends nothing.
    explicit PowerUser(Duration patience) : m_patience(patience) {}

    void loaderOpened(TimePoint now);
    void loaderClosed() { m_openedAt.reset(); }
    // Records that a byte came from the loader.
    void loaderSpoke() { m_spoke = true; }

    struct Scene {
        State state = State::Off;
        bool lineBusy = false; // bytes are still on their way to the board
        bool terminalMode = false;
    };
    [[nodiscard]] bool wantsPowerCycle(const Scene& scene, TimePoint now);

    // Returns when to ask again although nothing has happened.
    [[nodiscard]] std::optional<TimePoint> nextLook(TimePoint now) const;

  private:
    Duration m_patience;
    std::optional<TimePoint> m_openedAt;
    bool m_spoke = false; // since it was opened, or it is known to be a terminal
};

} // namespace zrkboard
