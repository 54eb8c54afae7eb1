#pragma once

#include <QDateTime>

namespace zrk {

/// Returns a name for a new record that no other has, such as "board-2026-03-31-142005.log".
[[nodiscard]] inline QString datedFileName(const QString& extension) {
    return QStringLiteral("board-%1%2")
        .arg(QDateTime::currentDateTime().toString(QStringLiteral("yyyy-MM-dd-HHmmss")), extension);
}

} // namespace zrk
