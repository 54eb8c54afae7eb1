#pragma once

#include "platform/RuntimeFailure.h"

namespace zrk {

/// The end of an operation, or the reason why the running one is to stop.
enum class Outcome {
    Done,     ///< it reached its end; while one runs: nothing stops it
    Rejected, ///< the addresses were refused before it began; nothing was sent
    Cancelled,
    TimedOut,     ///< the reply time-out ran out
    LimitReached, ///< a limit that the user set ran out
    WrongAnswer,  ///< the board sent other bytes than expected
    Refused,      ///< the board refused
    PortLost,
    PortNotOpened,
    PowerNotSwitched, ///< the command that switches the board's power failed or took too long
    File,             ///< a file could not be opened or read, or had another length than was announced
    Internal,         ///< any other run-time failure, such as a text that is not a number
};

/// Returns the name that machines and users read: "done", "wrong answer", "port lost".
[[nodiscard]] QString outcomeName(Outcome outcome);

/// Returns the outcome of an operation that a failure of this kind ends.
[[nodiscard]] Outcome outcomeOf(FailureKind kind);

} // namespace zrk
