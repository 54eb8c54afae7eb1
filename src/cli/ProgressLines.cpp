#include "cli/ProgressLines.h"

#include "cli/MessageLines.h"
#include "cli/Output.h"
#include "loader/Loader.h"
#include "platform/SecondsText.h"

#include <array>

namespace zrk {

using namespace std::chrono_literals;

namespace {

constexpr std::chrono::milliseconds kRefresh = 100ms;
constexpr std::chrono::milliseconds kEventEvery = 250ms;
constexpr std::chrono::seconds kWaitLineEvery = 10s;

QString nameOf(Awaited kind) {
    static constexpr std::array kNames{"power_on", "port",     "start",     "text",  "checksum",
                                       "pg_sibl",  "version",  "prepare",   "erase", "program",
                                       "finish",   "complete", "next_board"};
    return QString::fromLatin1(kNames.at(static_cast<std::size_t>(kind)));
}

} // namespace

QString fitted(const QStringList& parts, qsizetype columns) {
    QString line = parts.value(0).left(columns);
    for (const QString& part : parts.mid(1)) {
        if (part.isEmpty())
            continue;
        if (line.size() + 2 + part.size() > columns)
            break;
        line += QStringLiteral(", ") + part;
    }
    return line;
}

ProgressLines::ProgressLines(Loader& loader, Output& output, const MessageLines& messages)
    : m_loader(loader), m_output(output), m_messages(messages),
      m_timer(loader.loop.createTimer([this] { tick(); })), m_lastWaitLine(loader.loop.now()) {
    m_timer->start(kRefresh);
}

void ProgressLines::tick() {
    if (m_messages.isAsking())
        return;
    const bool transferring = m_loader.state.OperationActive && m_loader.transport.isTransferring();
    if (!transferring || m_loader.state.SendingSlot != m_shownSlot)
        endTransfer();
    const bool waits = m_loader.state.OperationActive && !m_loader.state.WaitingFor.isEmpty();
    if (m_wait && (!waits || m_loader.state.WaitingSince != m_wait->since))
        endWait();
    if (transferring && m_loader.state.BytesTotal > 0)
        return showTransfer();
    if (waits)
        return showWait();
    m_output.clearProgress();
    m_lastWaitLine = m_loader.loop.now();
}

void ProgressLines::showTransfer() {
    const auto now = m_loader.loop.now();
    m_loader.activity.refresh(); // it may not have noted this transfer yet
    const TransferRate& rate = m_loader.activity.rate();
    const SharedState& state = m_loader.state;
    const double percent = 100.0 * state.BytesSent / state.BytesTotal;
    const auto title = m_loader.controls.slotTitle(static_cast<std::size_t>(state.SendingSlot));
    m_shownSlot = state.SendingSlot;
    m_shownTotal = state.BytesTotal;
    m_lastWaitLine = now;
    if (now - m_lastEvent >= kEventEvery)
        tellTransfer(state.BytesSent, state.BytesTotal);
    const int tenth = static_cast<int>(percent / 10.0);
    if (!m_output.overwrites() && tenth == std::exchange(m_lastTenth, tenth))
        return;
    m_output.progress(fitted(
        {QStringLiteral("%1 %, %2").arg(percent, 0, 'f', 0).arg(rate.leftText(now)), rate.rateText(now),
         QStringLiteral("%1 / %2 bytes").arg(state.BytesSent).arg(state.BytesTotal), title},
        m_output.overwrites() ? m_output.progressColumns() : 1000));
}

/// Reports that an image is through, unless its transfer was broken off.
void ProgressLines::endTransfer() {
    const SharedState& state = m_loader.state;
    const bool next = m_shownSlot >= 0 && state.SendingSlot != m_shownSlot;
    if (m_shownSlot >= 0 && !state.CancelRequested && (next || state.BytesSent == state.BytesTotal)) {
        tellTransfer(m_shownTotal, m_shownTotal);
        if (!m_output.overwrites())
            m_output.progress(QStringLiteral("100 %, %1 bytes, %2")
                                  .arg(m_shownTotal)
                                  .arg(m_loader.controls.slotTitle(static_cast<std::size_t>(m_shownSlot))));
    }
    m_shownSlot = -1;
    m_lastTenth = 0;
}

void ProgressLines::tellTransfer(qint64 sent, qint64 total) {
    const auto now = m_loader.loop.now();
    m_lastEvent = now;
    QJsonObject fields{
        {QStringLiteral("image"), m_loader.controls.slotTitle(static_cast<std::size_t>(m_shownSlot))},
        {QStringLiteral("sent"), sent},
        {QStringLiteral("total"), total}};
    if (const auto perSecond = m_loader.activity.rate().rate(now))
        fields.insert(QStringLiteral("rate"), *perSecond);
    m_output.event("progress", fields);
}

void ProgressLines::tellWait(bool done) {
    const auto waited = std::chrono::duration_cast<std::chrono::seconds>(m_loader.loop.now() - m_wait->since);
    m_output.event("wait", {{QStringLiteral("what"), nameOf(m_wait->kind)},
                            {QStringLiteral("for"), m_wait->text},
                            {QStringLiteral("done"), done},
                            {QStringLiteral("seconds"), static_cast<qint64>(waited.count())}});
}

void ProgressLines::endWait() {
    tellWait(true);
    m_wait.reset();
}

void ProgressLines::showWait() {
    const auto now = m_loader.loop.now();
    const auto waited = std::chrono::duration_cast<std::chrono::seconds>(now - m_loader.state.WaitingSince);
    if (!m_wait || now - m_lastEvent >= 1s) {
        m_lastEvent = now;
        m_wait = {m_loader.state.WaitingKind, m_loader.state.WaitingFor, m_loader.state.WaitingSince};
        tellWait(false);
    }
    const QString line = QStringLiteral("%1: %2").arg(m_loader.state.WaitingFor, durationText(waited));
    if (m_output.overwrites()) {
        const qsizetype columns = m_output.progressColumns();
        return m_output.progress(line.size() <= columns
                                     ? line
                                     : fitted({durationText(waited), m_loader.state.WaitingFor}, columns));
    }
    // A rack that waits over night must not fill its log.
    if (now - m_lastWaitLine < kWaitLineEvery || m_loader.state.WaitingKind == Awaited::NextBoard)
        return;
    m_lastWaitLine = now;
    m_output.progress(line);
}

} // namespace zrk
