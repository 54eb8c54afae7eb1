#pragma once

#include <functional>

class QWidget;

namespace zrk {

/// Calls `then` once, as soon as the shown window is on the screen and the window manager has reported its
/// place. Waits only briefly for a window that stays hidden, for example as an icon.
void onceOnScreen(QWidget& window, std::function<void()> then);

} // namespace zrk
