#include "serial/ComPort.h"

#include "platform/RuntimeFailure.h"

#include <algorithm>
#include <limits>

namespace zrk {

bool fitsOneByteCodes(const QString& text) {
    return std::all_of(text.cbegin(), text.cend(), [](QChar c) { return c.unicode() <= 0xFF; });
}

void ComPort::OpenComPort() {
    if (m_open)
        return;
    m_commPort = m_controls.cmbComPort.selectedItemData();
    m_open = m_ports.open(m_commPort, LineSettings{}, m_handshaking);
    m_controls.lblState.Caption = QStringLiteral("Open...");
    m_controls.cmbComPort.Enabled = false;
}

void ComPort::CloseComPort() noexcept {
    if (!m_open)
        return;
    m_open.reset();
    m_controls.lblState.Caption = QStringLiteral("Closed...");
    m_controls.cmbComPort.Enabled = true;
}

QString ComPort::Input() {
    const qsizetype most = m_inputMode == InputMode::Binary ? 1 : std::numeric_limits<qsizetype>::max();
    return QString::fromLatin1(opened().read(most));
}

void ComPort::discardReceived() {
    if (m_open)
        (void)m_open->read(std::numeric_limits<qsizetype>::max());
}

void ComPort::Output(const QString& text) {
    if (!fitsOneByteCodes(text))
        throw RuntimeFailure(FailureKind::InvalidArgument,
                             QStringLiteral("\"%1\" holds a character that is not one byte on the line; "
                                            "only characters with the codes 0 to 255 can be sent.")
                                 .arg(text));
    if (!text.isEmpty())
        opened().write(text.toLatin1());
}

void ComPort::setHandshaking(Handshaking handshaking) {
    m_handshaking = handshaking;
    if (m_open)
        m_open->setHandshaking(handshaking);
}

SerialPort& ComPort::opened() const {
    if (!m_open)
        throw RuntimeFailure(FailureKind::PortNotOpen,
                             QStringLiteral("The serial port is not open. Open it and start again."));
    return *m_open;
}

} // namespace zrk
