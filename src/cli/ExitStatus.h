#pragma once

#include "controls/Outcome.h"

namespace zrk {

/// The program's exit statuses, which test racks rely on.
enum class ExitStatus {
    Done = 0,
    InternalFailure = 1,
    Usage = 2, ///< usage, configuration or address error; nothing was sent
    PortNotOpened = 3,
    NoAnswer = 4,
    WrongAnswer = 5,
    PortLost = 6,
    NotSeen = 7,          ///< an expected text did not come
    PowerNotSwitched = 8, ///< the command of --on-wait failed or took too long
    Cancelled = 130,
};

[[nodiscard]] ExitStatus exitStatusOf(Outcome outcome);

/// Returns the reason for a status in a word or two; the outcome is that of the last operation.
[[nodiscard]] QString reasonOf(ExitStatus status, Outcome outcome);

/// The reason for programs: "wrong answer" is "wrong_answer".
[[nodiscard]] inline QString reasonId(QString reason) {
    return reason.replace(QLatin1Char(' '), QLatin1Char('_'));
}

} // namespace zrk
