#pragma once

#include <functional>

class QWidget;

namespace zrk {

/// Calls `then` once, as soon as the shown window is on the screen and the window manager has said where.
/// A window that stays hidden, one that starts as an icon for instance, does not hold it up for long.
void onceOnScreen(QWidget& window, std::function<void()> then);

} // namespace zrk
