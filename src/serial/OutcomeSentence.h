#pragma once

#include "controls/Outcome.h"

namespace zrk {

struct SharedState;

/// One sentence on an operation that has not reached its end, for example "Cancelled at 78,247 of 163,840
/// bytes."; `failure` is the description of the failure that ended it, or "".
[[nodiscard]] QString outcomeSentence(Outcome outcome, const SharedState& state, const QString& failure);

} // namespace zrk
