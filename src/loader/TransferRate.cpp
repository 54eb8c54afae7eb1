#include "loader/TransferRate.h"

#include "platform/SecondsText.h"

#include <algorithm>
#include <cmath>

namespace zrk {

using namespace std::chrono_literals;

namespace {

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
    const double perSecond = static_cast<double>(sent) / elapsed;
    return m_line > 0 ? std::min(perSecond, static_cast<double>(m_line)) : perSecond;
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
    const auto left = timeFor(m_total - m_sent, now);
    return left ? durationText(*left) + QStringLiteral(" left") : QStringLiteral("starting");
}

std::optional<std::chrono::seconds> TransferRate::timeFor(std::int64_t bytes, TimePoint now) const {
    const auto perSecond = rate(now);
    if (!perSecond)
        return {};
    return std::chrono::seconds(
        static_cast<std::int64_t>(std::ceil(static_cast<double>(bytes) / *perSecond)));
}

QString TransferRate::seriesText(const Series& series, TimePoint now) const {
    const auto inAll = timeFor(m_total - m_sent + series.bytesBehind, now);
    return inAll ? text(now) + QStringLiteral(", %1 for all %2").arg(durationText(*inAll)).arg(series.count)
                 : text(now);
}

QString TransferRate::text(TimePoint now) const {
    const QString perSecond = rateText(now);
    return perSecond.isEmpty() ? leftText(now) : perSecond + QStringLiteral(", ") + leftText(now);
}

QString lineTimeText(std::int64_t bytes) {
    const std::int64_t seconds =
        (bytes + TransferRate::kLineBytesPerSecond - 1) / TransferRate::kLineBytesPerSecond;
    return QStringLiteral("about %1").arg(durationText(std::chrono::seconds(seconds)));
}

} // namespace zrk
