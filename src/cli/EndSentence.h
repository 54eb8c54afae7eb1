#pragma once

#include <QString>

namespace zrk {

struct Loader;
struct StepFacts;

/// Returns what was expected, what came and what to do, after the step has failed with the loader's last
/// operation. "" if a message box or the step has reported all of it.
[[nodiscard]] QString endSentence(const Loader& loader, const StepFacts& step);

/// That another program has the port open as well; "" when none is seen.
[[nodiscard]] QString otherUserHint(const Loader& loader);

} // namespace zrk
