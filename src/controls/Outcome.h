#pragma once

#include "platform/RuntimeFailure.h"

namespace zrk {

/// How an operation ended, or why the running one is to stop.
enum class Outcome {
    Done,     ///< it reached its end; of a running one: nothing stops it
    Rejected, ///< the addresses were refused before it began; nothing was sent
    Cancelled,
    TimedOut,     ///< the reply time-out ran out
    LimitReached, ///< a limit that the user set ran out
    WrongAnswer,  ///< the board sent something else than was expected
    Refused,      ///< the board refused
    PortLost,
    PortNotOpened,
    PowerNotSwitched, ///< the command that switches the board's power failed or took too long
    File,             ///< a file could not be opened or read, or had another length than was announced
    Internal,         ///< any other run-time failure, such as a text that is no number
};

/// The outcome as machines and people read it: "done", "wrong answer", "port lost".
[[nodiscard]] QString outcomeName(Outcome outcome);

/// The outcome that a failure of this kind is.
[[nodiscard]] Outcome outcomeOf(FailureKind kind);

} // namespace zrk
