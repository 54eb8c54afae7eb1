#include "controls/Outcome.h"

namespace zrk {

Outcome outcomeOf(FailureKind kind) {
    switch (kind) {
    case FailureKind::PortNotOpened:
        return Outcome::PortNotOpened;
    case FailureKind::PortLost:
    case FailureKind::PortNotOpen:
        return Outcome::PortLost;
    case FailureKind::WrongAnswer:
        return Outcome::WrongAnswer;
    case FailureKind::File:
        return Outcome::File;
    case FailureKind::TypeMismatch:
    case FailureKind::Overflow:
    case FailureKind::InvalidArgument:
    case FailureKind::Index:
    case FailureKind::Internal:
        break;
    }
    return Outcome::Internal;
}

} // namespace zrk
