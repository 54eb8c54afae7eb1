#pragma once

#include <QString>

#include <chrono>

namespace zrk {

/// Returns a time limit in seconds for messages, without a unit: "0.5" or "30".
[[nodiscard]] inline QString secondsText(std::chrono::milliseconds time) {
    return QString::number(std::chrono::duration<double>(time).count());
}

/// Returns a duration as "9 s", "2 min 5 s" or "1 h 3 min".
[[nodiscard]] inline QString durationText(std::chrono::seconds duration) {
    const auto seconds = duration.count();
    if (seconds < 60)
        return QStringLiteral("%1 s").arg(seconds);
    if (seconds < 3600)
        return QStringLiteral("%1 min %2 s").arg(seconds / 60).arg(seconds % 60);
    return QStringLiteral("%1 h %2 min").arg(seconds / 3600).arg(seconds / 60 % 60);
}

} // namespace zrk
