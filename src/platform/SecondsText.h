#pragma once

#include <QString>

#include <chrono>

namespace zrk {

/// A time limit in seconds as messages show it, without a unit: "0.5" or "30".
[[nodiscard]] inline QString secondsText(std::chrono::milliseconds time) {
    return QString::number(std::chrono::duration<double>(time).count());
}

} // namespace zrk
