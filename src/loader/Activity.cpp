#include "loader/Activity.h"

#include "config/ImageSlots.h"
#include "platform/SecondsText.h"
#include "serial/BoardHint.h"

#include <QLocale>

#include <algorithm>

namespace zrk {

using namespace std::chrono_literals;

namespace {

constexpr auto kStopped = 1s;

} // namespace

Activity::Activity(Link& link, ImageSlots& imageSlots)
    : m_link(link), m_imageSlots(imageSlots), m_timer(link.loop.createTimer([this] { refresh(); })) {
    m_timer->start(250ms);
}

void Activity::refresh() {
    // Not while an operation runs: a file server that hangs would hang the transfer.
    if (!m_link.state.OperationActive && m_link.loop.now() >= m_nextFileCheck) {
        m_imageSlots.checkFiles();
        m_nextFileCheck = m_link.loop.now() + 1s;
    }
    followTransfer();
    followUnsent();
    const StatusRemark shown = m_link.state.Asking ? StatusRemark{QStringLiteral("Waiting for your answer")}
                               : m_link.state.OperationActive ? StatusRemark{operationText()}
                                                              : idleRemark();
    if (m_link.controls.staStatus.FirstPanel.value() != shown.text)
        m_link.controls.staStatus.FirstPanel = shown.text;
    m_link.controls.staStatus.FirstPanelSeverity = shown.severity;
}

void Activity::followTransfer() {
    // A question pauses the transfer; after it the rate starts again.
    const bool transferring =
        m_link.state.OperationActive && m_link.transport.isTransferring() && !m_link.state.Asking;
    // A second transfer within one period shows as a count that falls back.
    const bool isAnother =
        m_link.state.BytesSent < m_lastSent || m_link.state.SendingSlot != m_lastSlot || !m_transferring;
    if (transferring && isAnother)
        m_rate.begin(m_link.state.BytesTotal, m_link.loop.now());
    m_transferring = transferring;
    m_lastSent = m_link.state.BytesSent;
    m_lastSlot = m_link.state.SendingSlot;
    if (transferring)
        m_rate.update(m_link.state.BytesSent, m_link.loop.now());
}

void Activity::followUnsent() {
    const qsizetype unsent =
        m_link.state.TerminalMode ? m_link.port.unsentBytes() + m_link.keys.waitingBytes() : 0;
    if (unsent == 0 || unsent < m_unsent)
        m_lineMoved = m_link.loop.now();
    m_unsent = unsent;
}

/// A line that takes nothing for longer than its pace explains has been stopped by the board.
QString Activity::stoppedLine() const {
    if (m_unsent == 0 || m_link.loop.now() - m_lineMoved < kStopped)
        return {};
    return QStringLiteral("The board has stopped the line (XOFF): %1 byte%2 wait%3. "
                          "Sending goes on when the board allows it; \"Cancel & Close port\" drops %4.")
        .arg(QLocale().toString(m_unsent), QLatin1String(m_unsent == 1 ? "" : "s"),
             QLatin1String(m_unsent == 1 ? "s" : ""), QLatin1String(m_unsent == 1 ? "it" : "them"));
}

QString Activity::operationText() const {
    if (m_transferring) {
        const Series& series = m_link.state.Images;
        const QString image = m_link.controls.slotTitle(static_cast<std::size_t>(m_link.state.SendingSlot));
        if (series.count < 2)
            return QStringLiteral("%1: %2").arg(image, m_rate.text(m_link.loop.now()));
        return QStringLiteral("%1, %2 of %3: %4")
            .arg(image)
            .arg(series.number)
            .arg(series.count)
            .arg(m_rate.seriesText(series, m_link.loop.now()));
    }
    if (!m_link.state.WaitingFor.isEmpty()) {
        const auto since =
            std::chrono::duration_cast<std::chrono::seconds>(m_link.loop.now() - m_link.state.WaitingSince);
        QString waits = QStringLiteral("%1: %2").arg(m_link.state.WaitingFor, durationText(since));
        if (!m_link.state.Remark.text.isEmpty())
            waits = QStringLiteral("%1 %2").arg(m_link.state.Remark.text, waits);
        // Without the rest of its image the board may never answer.
        return m_link.state.OtherLength.isEmpty() ? waits
                                                  : waits + QStringLiteral(". ") + m_link.state.OtherLength;
    }
    if (!m_link.state.TerminalMode)
        return QStringLiteral("Talking to the board");
    const QString stopped = stoppedLine();
    return stopped.isEmpty() ? QStringLiteral("Running a script") : stopped;
}

/// The worst comes first: a narrow window cuts off the end.
StatusRemark Activity::idleRemark() const {
    const StatusRemark& remark = m_link.state.Remark;
    QStringList texts{remark.text, remark.severity == RemarkSeverity::Failed ? hint() : QString(),
                      m_link.state.LineErrorsText};
    RemarkSeverity severity =
        m_link.state.LineErrorsText.isEmpty() ? RemarkSeverity::Note : RemarkSeverity::Warning;
    if (const QString stopped = stoppedLine(); !stopped.isEmpty()) {
        texts.prepend(stopped);
        severity = RemarkSeverity::Warning;
    }
    if (m_link.state.FlashStateUnknown) {
        texts.prepend(kFlashStateUnknownText);
        severity = RemarkSeverity::Failed;
    }
    texts.removeAll(QString());
    return texts.isEmpty() ? StatusRemark{portText()}
                           : StatusRemark{texts.join(QLatin1Char(' ')), std::max(severity, remark.severity)};
}

QString Activity::hint() const {
    return boardHint(m_link.operation.outcome(), m_link.port.lastReceived(), m_link.port.openedName());
}

QString Activity::portText() const {
    const bool open = m_link.port.isOpen();
    if (m_link.controls.cmbComPort.ListIndex < 0)
        return {};
    const int number = open ? m_link.port.CommPort() : m_link.controls.cmbComPort.selectedItemData();
    const QString device = m_link.port.deviceName(number);
    QString text = QStringLiteral("COM%1").arg(number);
    if (!device.isEmpty() && !device.endsWith(text)) // some systems have no other name for it
        text += QStringLiteral(" (%1)").arg(device);
    text += open ? QStringLiteral(": open") : QStringLiteral(": closed");
    if (open && m_link.state.TerminalMode)
        text += QStringLiteral(", terminal");
    const QStringList changed = changedFiles();
    if (!changed.isEmpty())
        return text + QStringLiteral(". Changed on disk: ") + changed.join(QStringLiteral(", "));
    const QString next = nextStep();
    return next.isEmpty() ? text : text + QStringLiteral(". Next: ") + next;
}

/// The next step of a bring-up; "" where there is none or the user is in the terminal.
QString Activity::nextStep() const {
    const auto caption = [](const CommandButton& button) {
        return QStringLiteral("\"%1\"").arg(QString(button.Caption).remove(QLatin1Char('&')));
    };
    const Controls& controls = m_link.controls;
    if (m_link.state.TerminalMode)
        return {};
    if (controls.cmdStartSecondary.Enabled && m_link.port.isOpen())
        return QStringLiteral("%1 or %2.").arg(caption(controls.cmdURK), caption(controls.cmdStartSecondary));
    if (!controls.cmdStartPrimary.Enabled)
        return QStringLiteral("choose a primary boot.");
    return caption(controls.cmdStartPrimary) + QLatin1Char('.');
}

/// Returns the slots whose rows are marked, for users who cannot point at a mark.
QStringList Activity::changedFiles() const {
    QStringList titles;
    for (std::size_t slot = 0; slot < m_link.controls.lblFileChanged.size(); ++slot) {
        if (!m_link.controls.lblFileChanged[slot].Caption.value().isEmpty())
            titles += m_link.controls.slotTitle(slot);
    }
    return titles;
}

} // namespace zrk
