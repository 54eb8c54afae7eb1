#include "loader/Activity.h"

#include "config/ImageSlots.h"
#include "platform/SecondsText.h"

namespace zrk {

using namespace std::chrono_literals;

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
    const QString text = m_link.state.Asking            ? QStringLiteral("Waiting for your answer")
                         : m_link.state.OperationActive ? operationText()
                                                        : idleText();
    if (m_link.controls.staStatus.FirstPanel.value() != text)
        m_link.controls.staStatus.FirstPanel = text;
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

QString Activity::operationText() const {
    if (m_transferring) {
        const Series& series = m_link.state.Images;
        if (series.count < 2)
            return QStringLiteral("Sending: ") + m_rate.text(m_link.loop.now());
        return QStringLiteral("Sending %1 of %2: %3")
            .arg(series.number)
            .arg(series.count)
            .arg(m_rate.seriesText(series, m_link.loop.now()));
    }
    if (!m_link.state.WaitingFor.isEmpty()) {
        const auto since =
            std::chrono::duration_cast<std::chrono::seconds>(m_link.loop.now() - m_link.state.WaitingSince);
        const QString waits = QStringLiteral("%1: %2").arg(m_link.state.WaitingFor, durationText(since));
        // Without the rest of its image the board may never answer.
        return m_link.state.OtherLength.isEmpty() ? waits
                                                  : waits + QStringLiteral(". ") + m_link.state.OtherLength;
    }
    return m_link.state.TerminalMode ? QStringLiteral("Running a script")
                                     : QStringLiteral("Talking to the board");
}

QString Activity::idleText() const {
    QStringList remarks{m_link.state.Remark, m_link.state.LineErrorsText};
    if (m_link.state.FlashStateUnknown)
        remarks += kFlashStateUnknownText;
    remarks.removeAll(QString());
    if (!remarks.isEmpty())
        return remarks.join(QLatin1Char(' '));
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
    return changed.isEmpty()
               ? text
               : text + QStringLiteral(". Changed on disk: ") + changed.join(QStringLiteral(", "));
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
