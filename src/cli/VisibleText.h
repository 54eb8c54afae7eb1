#pragma once

#include <QString>

namespace zrk {

/// The text with every control character but line ends and tabs as a sign, such as "^[" for Escape: neither a
/// board nor a file must steer the user's terminal.
[[nodiscard]] QString withVisibleControls(const QString& text);

} // namespace zrk
