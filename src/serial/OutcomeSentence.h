#pragma once

#include "controls/Outcome.h"

namespace zrk {

struct SharedState;

/// Returns a sentence on an operation that has not succeeded, for example "Cancelled at 78,247 of 163,840
/// bytes.", and those on image files of a wrong length. `failure` describes the failure that ended it, or is
/// "".
[[nodiscard]] QString outcomeSentence(Outcome outcome, const SharedState& state, const QString& failure);

} // namespace zrk
