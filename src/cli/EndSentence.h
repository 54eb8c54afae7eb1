#pragma once

#include <QString>

namespace zrk {

struct Loader;
struct StepFacts;

/// What was expected, what came and what to do, for those who cannot look at the wire, when the step has just
/// failed with the loader's last operation. "" when a message box or the step has told it all.
[[nodiscard]] QString endSentence(const Loader& loader, const StepFacts& step);

/// That another program has the port open as well; "" when none is seen.
[[nodiscard]] QString otherUserHint(const Loader& loader);

} // namespace zrk
