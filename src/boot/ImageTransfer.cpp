#include "boot/ImageTransfer.h"

#include "config/HexConversions.h"
#include "config/ImageSlots.h"
#include "platform/MessageBoxes.h"
#include "platform/RuntimeFailure.h"
#include "serial/StatusConsole.h"
#include "serial/Transport.h"

#include <QFile>

namespace zrk {
namespace {

/// The whole file; it is closed again before anything is sent.
QByteArray readImage(const QString& path) {
    if (path.isEmpty())
        throw RuntimeFailure(FailureKind::File,
                             QStringLiteral("No image file has been chosen. Choose one first."));
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        throw RuntimeFailure(FailureKind::File, QStringLiteral("Cannot open the image file %1: %2. Choose "
                                                               "the file again.")
                                                    .arg(path, file.errorString()));
    QByteArray content = file.readAll();
    if (file.error() != QFileDevice::NoError)
        throw RuntimeFailure(
            FailureKind::File,
            QStringLiteral("Cannot read the image file %1: %2.").arg(path, file.errorString()));
    return content;
}

} // namespace

ImageTransfer::ImageTransfer(SharedState& state, Controls& controls, ImageSlots& imageSlots,
                             StatusConsole& console, Transport& transport, MessageBoxes& boxes)
    : m_state(state), m_controls(controls), m_imageSlots(imageSlots), m_console(console),
      m_transport(transport), m_boxes(boxes) {}

bool ImageTransfer::SendImage(int slot) {
    m_imageSlots.checkFile(slot);
    const bool payloadOnly = slot == kFlashImage;
    if (!payloadOnly) {
        sendHeader(slot);
        const bool toPrimaryBoot = slot >= kSecondaryExecutable && slot <= kKernel;
        if (toPrimaryBoot && !awaitAcceptance())
            return false;
        m_console.PrintStatus(QStringLiteral("Sending code .. "));
    }
    sendCode(slot);
    if (!payloadOnly)
        m_console.PrintStatus(QStringLiteral("done!/n"));
    return true;
}

void ImageTransfer::sendHeader(int slot) {
    const auto i = static_cast<std::size_t>(slot);
    m_controls.staStatus.SecondPanel = QString();
    m_controls.pgbDownload.Value = 0.0;
    m_console.PrintStatus(QStringLiteral("Sending startaddress .. "));
    sendNumber(m_controls.txtStartAddress[i].Text);
    m_console.PrintStatus(QStringLiteral("done!/n"));
    m_console.PrintStatus(QStringLiteral("Sending size .. "));
    sendNumber(m_controls.sizeOf(i));
    m_console.PrintStatus(QStringLiteral("done!/n"));
}

void ImageTransfer::sendNumber(const QString& text) {
    for (const std::uint8_t byte : lineBytes(text))
        m_transport.SendByte(byte);
}

bool ImageTransfer::awaitAcceptance() {
    m_console.PrintStatus(QStringLiteral("Wait for acceptance from primary boot .. "));
    m_transport.ArmReplyTimer(true);
    m_state.LastChar = m_transport.ReadChar();
    m_console.PrintStatus(m_state.LastChar);
    m_transport.ArmReplyTimer(false);
    if (m_state.LastChar == QLatin1String("o")) {
        m_console.PrintStatus(QStringLiteral(" ..OK!/n"));
        return true;
    }
    const bool refused = m_state.LastChar == QLatin1String("E");
    if (refused)
        m_state.noteStop(Outcome::Refused);
    m_console.PrintStatus(refused ? QStringLiteral(" .. Error signalled back from primary boot./n")
                                  : QStringLiteral(" .. invalid char! Cancelled./n"));
    return false;
}

void ImageTransfer::sendCode(int slot) {
    const auto i = static_cast<std::size_t>(slot);
    const QByteArray content = readImage(m_controls.txtFilNam[i].Tag);
    m_state.BytesTotal = HexToLong(m_controls.lblCodeSize[i].Caption);
    m_state.BytesSent = 0;
    m_transport.enableSentStatus(true);
    std::int32_t position = 0;
    bool stopped = false;
    while (position < m_state.BytesTotal && !stopped) {
        m_state.BytesSent = ++position;
        if (position <= content.size())
            m_transport.SendByte(static_cast<std::uint8_t>(content[position - 1]));
        stopped = !passAfterByte();
    }
    m_state.BytesSent = position;
    m_transport.timSentStatus_Timer();
    m_transport.enableSentStatus(false);
}

/// Yields until the line takes another byte. False when the user wants the transfer to stop.
bool ImageTransfer::passAfterByte() {
    m_transport.pass();
    for (;;) {
        if (m_state.CancelRequested) {
            if (userConfirmsCancel())
                return false;
            m_state.withdrawStop();
        }
        if (m_transport.hasRoom())
            return true;
        m_transport.waitForRoom();
    }
}

bool ImageTransfer::userConfirmsCancel() {
    m_state.MessageText = QStringLiteral("If you cancel now, you have to restart all over!\r\nAre you sure?");
    return m_boxes.show({m_state.MessageText, MessageIcon::Question, MessageButtons::YesNo, QString()}) ==
           Answer::Yes;
}

} // namespace zrk
