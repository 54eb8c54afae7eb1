#include "serial/ComPort.h"

#include "platform/RuntimeFailure.h"

#include <QScopeGuard>

#include <algorithm>
#include <limits>

namespace zrk {
namespace {

constexpr qsizetype kAll = std::numeric_limits<qsizetype>::max();
constexpr qsizetype kRemembered = 512;
constexpr qsizetype kFirst = 3;

} // namespace

bool fitsOneByteCodes(const QString& text) {
    return std::all_of(text.cbegin(), text.cend(), [](QChar c) { return c.unicode() <= 0xFF; });
}

void ComPort::OpenComPort() {
    if (m_open)
        return;
    giveUpOpening();
    const unsigned opening = m_opening = ++m_openings;
    const int selected = m_controls.cmbComPort.ListIndex;
    m_commPort = m_controls.cmbComPort.selectedItemData();
    tellNotice();
    m_controls.lblState.Caption = QStringLiteral("Opening...");
    const auto notOpened = qScopeGuard([&] {
        if (m_opening == opening)
            noteClosed();
    });
    const Handshaking asked = m_handshaking;
    auto device = m_ports.open(m_commPort, LineSettings{}, asked);
    if (m_opening != opening) // what happened to the port since then stays
        throw RuntimeFailure(FailureKind::Cancelled, QStringLiteral("Opening the port was cancelled."));
    m_opening = 0;
    m_open = std::move(device);
    if (m_handshaking != asked) // by a click in the meantime
        m_open->setHandshaking(m_handshaking);
    m_openedDevice = m_ports.deviceName(m_commPort);
    m_firstReceived.clear();
    m_lastReceived.clear();
    m_controls.lblState.Caption = QStringLiteral("Open...");
    m_controls.cmbComPort.ListIndex = selected; // whatever was chosen while it was being opened
    m_controls.cmbComPort.Enabled = false;
}

void ComPort::giveUpOpening() {
    if (m_opening == 0)
        return;
    noteClosed();
    m_ports.giveUp();
}

void ComPort::noteClosed() {
    m_opening = 0;
    m_controls.lblState.Caption = QStringLiteral("Closed...");
}

void ComPort::tellNotice() {
    const QString notice = m_ports.notice(m_commPort);
    if (!notice.isEmpty() && notice != m_toldNotice)
        m_controls.txtStatus.append(QStringLiteral("\r\n--- %1 ---\r\n").arg(notice));
    m_toldNotice = notice;
}

QString ComPort::openedName() const {
    return QStringLiteral("COM%1 (%2)").arg(QString::number(m_commPort), m_openedDevice);
}

std::optional<bool> ComPort::openedDeviceIsThere() const {
    const auto isThere = m_ports.isThere(m_commPort);
    return isThere ? std::optional(*isThere && m_ports.deviceName(m_commPort) == m_openedDevice &&
                                   m_controls.cmbComPort.selectedItemData() == m_commPort)
                   : std::nullopt;
}

void ComPort::CloseComPort() noexcept {
    giveUpOpening();
    if (!m_open)
        return;
    m_errorsKept = lineErrors();
    m_open.reset();
    m_putBack.clear();
    m_seen = 0;
    noteClosed();
    m_controls.cmbComPort.Enabled = true;
}

qsizetype ComPort::InBufferCount() {
    // The loss of a device is reported only after all that it sent has been read.
    if (m_putBack.isEmpty())
        return opened().bytesWaiting();
    try {
        return m_putBack.size() + opened().bytesWaiting();
    } catch (const RuntimeFailure&) {
        return m_putBack.size();
    }
}

QByteArray ComPort::takeFromDevice(qsizetype most) {
    QByteArray taken = opened().read(most);
    m_firstReceived += taken.left(kFirst - m_firstReceived.size());
    m_lastReceived += taken;
    if (m_lastReceived.size() > 2 * kRemembered) // so that not every byte moves all the others
        m_lastReceived = m_lastReceived.right(kRemembered);
    return taken;
}

QByteArray ComPort::take(qsizetype most) {
    if (m_putBack.isEmpty())
        return takeFromDevice(most);
    QByteArray taken = m_putBack.left(most);
    m_putBack.remove(0, taken.size());
    m_seen = std::max(qsizetype{0}, m_seen - taken.size());
    try {
        if (most > taken.size() && opened().bytesWaiting() > 0)
            taken += takeFromDevice(most - taken.size());
    } catch (const RuntimeFailure&) {
        // The next call throws, since nothing is left to read.
    }
    return taken;
}

QString ComPort::Input() {
    return QString::fromLatin1(take(m_inputMode == InputMode::Binary ? 1 : kAll));
}

QByteArray ComPort::receive() {
    return InBufferCount() > 0 ? take(kAll) : QByteArray();
}

QByteArray ComPort::lookAhead() {
    const qsizetype seen = m_seen;
    const QByteArray all = receive();
    m_putBack = all;
    m_seen = all.size();
    return all.mid(seen);
}

void ComPort::skip(char byte) {
    while (m_putBack.startsWith(byte))
        (void)take(1);
    if (m_putBack.isEmpty())
        opened().skip(byte);
}

void ComPort::Output(const QString& text) {
    if (!fitsOneByteCodes(text))
        throw RuntimeFailure(FailureKind::InvalidArgument,
                             QStringLiteral("\"%1\" contains a character that is not one byte on the line; "
                                            "only characters with the codes 0 to 255 can be sent.")
                                 .arg(text));
    if (!text.isEmpty())
        opened().write(text.toLatin1());
}

void ComPort::countLineErrors() {
    m_errorsKept.reset();
    m_errorsBefore = opened().lineErrors().value_or(LineErrors{});
}

LineErrors ComPort::lineErrors() const noexcept {
    if (m_errorsKept)
        return *m_errorsKept;
    const auto now = m_open ? m_open->lineErrors() : std::nullopt;
    return now ? *now - m_errorsBefore : LineErrors{};
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
