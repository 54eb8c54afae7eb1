#pragma once

#include "board/program/FileDescriptor.h"

namespace zrkboard {

// The signals that control the program, as a descriptor to poll. They stay blocked from its construction on,
// so that an early one is not lost.
class SignalInput {
  public:
    enum class Wish {
        None,
        End,        // SIGTERM, SIGINT, SIGHUP
        PowerCycle, // SIGUSR1
        HangUp      // SIGUSR2
    };

    SignalInput();

    [[nodiscard]] int fd() const { return m_fd.get(); }

    // Takes the oldest signal not yet taken.
    [[nodiscard]] Wish take();

  private:
    FileDescriptor m_fd;
};

} // namespace zrkboard
