#include "serial/ComPort.h"

#include "platform/RuntimeFailure.h"

#include <algorithm>
#include <limits>

namespace zrk {

bool fitsOneByteCodes(const QString& text) {
    return std::all_of(text.cbegin(), text.cend(), [](QChar c) { return c.unicode() <= 0xFF; });
}

ComPort::ComPort(SerialPort& port, Controls& controls) : m_port(port), m_controls(controls) {}

void ComPort::OpenComPort() {
    if (m_port.isOpen())
        return;
    m_commPort = m_controls.cmbComPort.selectedItemData();
    m_port.open(m_commPort, LineSettings{});
    m_controls.lblState.Caption = QStringLiteral("Open...");
    m_controls.cmbComPort.Enabled = false;
}

void ComPort::CloseComPort() noexcept {
    if (!m_port.isOpen())
        return;
    m_port.close();
    m_controls.lblState.Caption = QStringLiteral("Closed...");
    m_controls.cmbComPort.Enabled = true;
}

QString ComPort::Input() {
    const qsizetype most = m_inputMode == InputMode::Binary ? 1 : std::numeric_limits<qsizetype>::max();
    return QString::fromLatin1(m_port.read(most));
}

void ComPort::discardReceived() {
    (void)m_port.read(std::numeric_limits<qsizetype>::max());
}

void ComPort::Output(const QString& text) {
    if (!fitsOneByteCodes(text))
        throw RuntimeFailure(FailureKind::InvalidArgument,
                             QStringLiteral("\"%1\" holds a character that is not one byte on the line; "
                                            "only characters with the codes 0 to 255 can be sent.")
                                 .arg(text));
    if (!text.isEmpty())
        m_port.write(text.toLatin1());
}

} // namespace zrk
