#pragma once

#include <QIcon>
#include <QString>

namespace zrk {

/// Returns the application's title: of the window, of the About box, and of message boxes without one.
[[nodiscard]] QString applicationTitle();

/// Returns the program's icon in all its sizes; the one of 32 pixels has 16 colours.
[[nodiscard]] QIcon applicationIcon();

} // namespace zrk
