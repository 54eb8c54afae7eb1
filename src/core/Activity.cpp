#include "core/Activity.h"

#include "config/ImageSlots.h"
#include "serial/ComPort.h"
#include "serial/Transport.h"

namespace zrk {

using namespace std::chrono_literals;

Activity::Activity(SharedState& state, Controls& controls, ComPort& port, Transport& transport,
                   ImageSlots& imageSlots, EventLoop& loop)
    : m_state(state), m_controls(controls), m_port(port), m_transport(transport), m_imageSlots(imageSlots),
      m_loop(loop), m_timer(loop.createTimer([this] { refresh(); })) {
    m_timer->start(250ms);
}

void Activity::refresh() {
    // Not while an operation runs: a file server that hangs would hang the transfer.
    if (!m_state.OperationActive && m_loop.now() >= m_nextFileCheck) {
        m_imageSlots.checkFiles();
        m_nextFileCheck = m_loop.now() + 1s;
    }
    followTransfer();
    QString text = m_state.OperationActive ? operationText() : idleText();
    if (!m_state.OperationActive && m_state.FlashStateUnknown)
        text = kFlashStateUnknownText;
    if (m_controls.staStatus.FirstPanel.value() != text)
        m_controls.staStatus.FirstPanel = text;
}

void Activity::followTransfer() {
    const bool transferring = m_state.OperationActive && m_transport.isTransferring();
    // A transfer that follows another within one period shows as a count that falls back.
    if (transferring && (!m_transferring || m_state.BytesSent < m_lastSent))
        m_rate.begin(m_state.BytesTotal, m_loop.now());
    m_transferring = transferring;
    m_lastSent = m_state.BytesSent;
    if (transferring)
        m_rate.update(m_state.BytesSent, m_loop.now());
}

QString Activity::operationText() const {
    if (m_transferring)
        return QStringLiteral("Sending: ") + m_rate.text(m_loop.now());
    if (!m_state.WaitingFor.isEmpty()) {
        const auto since =
            std::chrono::duration_cast<std::chrono::seconds>(m_loop.now() - m_state.WaitingSince);
        return QStringLiteral("%1: %2").arg(m_state.WaitingFor, durationText(since));
    }
    return m_state.TerminalMode ? QStringLiteral("Running a script") : QStringLiteral("Talking to the board");
}

QString Activity::idleText() const {
    const bool open = m_port.isOpen();
    if (m_controls.cmbComPort.ListIndex < 0)
        return {};
    const int number = open ? m_port.CommPort() : m_controls.cmbComPort.selectedItemData();
    const QString device = m_port.deviceName(number);
    QString text = QStringLiteral("COM%1").arg(number);
    if (!device.isEmpty() && !device.endsWith(text)) // a system may have no other name for it
        text += QStringLiteral(" (%1)").arg(device);
    text += open ? QStringLiteral(": open") : QStringLiteral(": closed");
    if (open && m_state.TerminalMode)
        text += QStringLiteral(", terminal");
    const QStringList changed = changedFiles();
    return changed.isEmpty()
               ? text
               : text + QStringLiteral(". Changed on disk: ") + changed.join(QStringLiteral(", "));
}

/// The slots whose rows are marked, for those who cannot point at a mark.
QStringList Activity::changedFiles() const {
    QStringList titles;
    for (std::size_t slot = 0; slot < m_controls.lblFileChanged.size(); ++slot) {
        if (!m_controls.lblFileChanged[slot].Caption.value().isEmpty())
            titles += m_controls.slotTitle(slot);
    }
    return titles;
}

} // namespace zrk
