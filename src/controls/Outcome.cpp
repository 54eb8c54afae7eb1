#include "controls/Outcome.h"

#include <array>

namespace zrk {

QString outcomeName(Outcome outcome) {
    static constexpr std::array kNames{
        "done",    "rejected",  "cancelled",       "timed out",          "limit reached", "wrong answer",
        "refused", "port lost", "port not opened", "power not switched", "file",          "internal"};
    return QString::fromLatin1(kNames.at(static_cast<std::size_t>(outcome)));
}

Outcome outcomeOf(FailureKind kind) {
    switch (kind) {
    case FailureKind::PortNotOpened:
        return Outcome::PortNotOpened;
    case FailureKind::PortLost:
    case FailureKind::PortNotOpen:
        return Outcome::PortLost;
    case FailureKind::Cancelled:
        return Outcome::Cancelled;
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
