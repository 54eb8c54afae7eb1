#include "loader/TransferRate.h"

#include <cmath>

namespace zrk {

using namespace std::chrono_literals;

namespace {

constexpr std::int64_t kLineBytesPerSecond = 11520; // 115200 baud, ten bits a byte
constexpr std::chrono::seconds kStallLimit = 3s;
constexpr std::chrono::seconds kWindow = 5s;
constexpr std::chrono::seconds kBurst = 1s; // the first bytes go into the driver's buffer, not out

} // namespace

void TransferRate::begin(std::int64_t total, TimePoint now) {
    m_total = total;
    m_sent = 0;
    m_lastProgress = now;
    m_begun = now;
    m_window.clear();
}

void TransferRate::update(std::int64_t sent, TimePoint now) {
    if (sent == m_sent)
        return;
    m_sent = sent;
    m_lastProgress = now;
    if (now - m_begun < kBurst)
        return;
    m_window.push_back({now, sent});
    while (m_window.size() > 2 && now - m_window.front().when > kWindow)
        m_window.pop_front();
}

std::chrono::seconds TransferRate::silence(TimePoint now) const {
    return std::chrono::duration_cast<std::chrono::seconds>(now - m_lastProgress);
}

std::optional<double> TransferRate::rate(TimePoint now) const {
    if (m_sent >= m_total || silence(now) >= kStallLimit || m_window.empty())
        return {};
    const double elapsed = std::chrono::duration<double>(now - m_window.front().when).count();
    const std::int64_t sent = m_sent - m_window.front().sent;
    if (elapsed < 0.5 || sent <= 0)
        return {};
    return static_cast<double>(sent) / elapsed;
}

QString TransferRate::rateText(TimePoint now) const {
    const auto perSecond = rate(now);
    return perSecond ? QStringLiteral("%1 KB/s").arg(*perSecond / 1000.0, 0, 'f', 1) : QString();
}

QString TransferRate::leftText(TimePoint now) const {
    if (m_sent >= m_total)
        return QStringLiteral("all handed over");
    if (silence(now) >= kStallLimit)
        return QStringLiteral("stalled for %1").arg(durationText(silence(now)));
    const auto perSecond = rate(now);
    if (!perSecond)
        return QStringLiteral("starting");
    const auto left =
        static_cast<std::int64_t>(std::ceil(static_cast<double>(m_total - m_sent) / *perSecond));
    return durationText(std::chrono::seconds(left)) + QStringLiteral(" left");
}

QString TransferRate::text(TimePoint now) const {
    const QString perSecond = rateText(now);
    return perSecond.isEmpty() ? leftText(now) : perSecond + QStringLiteral(", ") + leftText(now);
}

QString lineTimeText(std::int64_t bytes) {
    const std::int64_t seconds = (bytes + kLineBytesPerSecond - 1) / kLineBytesPerSecond;
    return QStringLiteral("about %1").arg(durationText(std::chrono::seconds(seconds)));
}

QString durationText(std::chrono::seconds duration) {
    const auto seconds = duration.count();
    if (seconds < 60)
        return QStringLiteral("%1 s").arg(seconds);
    if (seconds < 3600)
        return QStringLiteral("%1 min %2 s").arg(seconds / 60).arg(seconds % 60);
    return QStringLiteral("%1 h %2 min").arg(seconds / 3600).arg(seconds / 60 % 60);
}

} // namespace zrk
