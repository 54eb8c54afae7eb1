#pragma once

#include <QDateTime>

namespace zrk {

/// Returns the time in UTC as events and reports have it: "2026-03-01T13:05:06.789Z".
[[nodiscard]] inline QString utcText(const QDateTime& time = QDateTime::currentDateTimeUtc()) {
    return time.toUTC().toString(Qt::ISODateWithMs);
}

/// Returns the local time now with its offset from UTC, for people: "2026-03-01T14:05:06.789+01:00".
[[nodiscard]] inline QString localText() {
    const QDateTime now = QDateTime::currentDateTime();
    return now.toOffsetFromUtc(now.offsetFromUtc()).toString(Qt::ISODateWithMs);
}

} // namespace zrk
