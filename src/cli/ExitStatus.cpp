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
    case Outcome::Cancelled:
        return ExitStatus::Cancelled;
    case Outcome::File:
    case Outcome::Internal:
        break;
    }
    return ExitStatus::InternalFailure;
}

} // namespace zrk
