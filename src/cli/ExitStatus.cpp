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
    case Outcome::NoAnswer:
        return ExitStatus::NoAnswer;
    case Outcome::WrongAnswer:
        return ExitStatus::WrongAnswer;
    case Outcome::PortLost:
        return ExitStatus::PortLost;
    case Outcome::Cancelled:
        return ExitStatus::Cancelled;
    case Outcome::Failed:
        break;
    }
    return ExitStatus::InternalFailure;
}

} // namespace zrk
