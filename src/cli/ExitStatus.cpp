#include "cli/ExitStatus.h"

namespace zrk {

ExitStatus exitStatusOf(Outcome outcome) {
    switch (outcome) {
    case Outcome::Done:
        return ExitStatus::Done;
    case Outcome::Rejected:
        return ExitStatus::Usage;
    case Outcome::PortNotOpened:
        return ExitStatus::PortNotOpened;
    case Outcome::TimedOut:
    case Outcome::LimitReached:
        return ExitStatus::NoAnswer;
    case Outcome::WrongAnswer:
    case Outcome::Refused:
        return ExitStatus::WrongAnswer;
    case Outcome::PortLost:
        return ExitStatus::PortLost;
    case Outcome::PowerNotSwitched:
        return ExitStatus::PowerNotSwitched;
    case Outcome::Cancelled:
        return ExitStatus::Cancelled;
    case Outcome::File:
    case Outcome::Internal:
        break;
    }
    return ExitStatus::InternalFailure;
}

QString reasonOf(ExitStatus status, Outcome outcome) {
    switch (status) {
    case ExitStatus::Usage:
        return QStringLiteral("usage");
    case ExitStatus::NoAnswer:
    case ExitStatus::NotSeen:
        return outcomeName(outcome == Outcome::TimedOut ? outcome : Outcome::LimitReached);
    default:
        break;
    }
    if (exitStatusOf(outcome) == status)
        return outcomeName(outcome);
    // Failures outside of operations: a check before the first, or the last bytes after the last one.
    switch (status) {
    case ExitStatus::Done:
        return outcomeName(Outcome::Done);
    case ExitStatus::PortNotOpened:
        return outcomeName(Outcome::PortNotOpened);
    case ExitStatus::PortLost:
        return outcomeName(Outcome::PortLost);
    case ExitStatus::PowerNotSwitched:
        return outcomeName(Outcome::PowerNotSwitched);
    case ExitStatus::Cancelled:
        return outcomeName(Outcome::Cancelled);
    default:
        return outcomeName(Outcome::Internal);
    }
}

} // namespace zrk
