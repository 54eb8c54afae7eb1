#pragma once

#include <QIcon>

namespace zrk {

/// The program's icon in all its sizes; the one of 32 pixels has 16 colours.
[[nodiscard]] QIcon applicationIcon();

} // namespace zrk
