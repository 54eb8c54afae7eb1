#pragma once

#include <QString>

namespace zrk {

/// The application's title: of the window, of the About box, and of message boxes without one.
inline QString applicationTitle() {
    return QStringLiteral("ZRK6924 Loader");
}

} // namespace zrk
