#include "boot/ImageTransfer.h"

#include "boot/ImageStore.h"
#include "config/HexConversions.h"
#include "config/ImageSlots.h"

#include <QLocale>

#include <boost/crc.hpp>

#include <algorithm>

namespace zrk {
namespace {

/// Words what it means for the board that the file's length is not the announced one.
QString otherLengthText(const QString& title, int slot, qsizetype length, std::int32_t announced) {
    const QLocale locale;
    const QString lengths = QStringLiteral("%1: the file now has %2 bytes, but %3 were announced; ")
                                .arg(title, locale.toString(length), locale.toString(announced));
    if (length < announced)
        return lengths + QStringLiteral("the board waits for the rest, or took later bytes for it. Cycle its "
                                        "power, choose the file again and repeat.");
    return lengths + QStringLiteral("%1 holds only the first %2. Choose the file again and repeat.")
                         .arg(QLatin1String(slot == kFlashImage ? "the flash" : "the board"),
                              locale.toString(announced));
}

} // namespace

ImageTransfer::ImageTransfer(Link& link, ImageSlots& imageSlots) : m_link(link), m_imageSlots(imageSlots) {}

bool ImageTransfer::SendImage(int slot) {
    m_imageSlots.checkFile(slot);
    requireSendable(m_link.controls, slot);
    m_link.operation.watchLine();
    const bool payloadOnly = slot == kFlashImage;
    if (!payloadOnly) {
        sendHeader(slot);
        const bool toPrimaryBoot = factsOf(slot).memory == Memory::Sdram;
        if (toPrimaryBoot && !awaitAcceptance())
            return false;
        m_link.console.PrintStatus(QStringLiteral("Sending code .. "));
    }
    sendCode(slot);
    if (!payloadOnly)
        m_link.console.PrintStatus(QStringLiteral("done!/n"));
    return true;
}

void ImageTransfer::sendHeader(int slot) {
    const auto i = static_cast<std::size_t>(slot);
    m_link.controls.staStatus.SecondPanel = QString();
    m_link.controls.pgbDownload.Value = 0.0;
    m_link.console.PrintStatus(QStringLiteral("Sending startaddress .. "));
    sendNumber(m_link.controls.txtStartAddress[i].Text);
    m_link.console.PrintStatus(QStringLiteral("done!/n"));
    m_link.console.PrintStatus(QStringLiteral("Sending size .. "));
    sendNumber(m_link.controls.sizeOf(i));
    m_link.state.LastSent = QStringLiteral("the address and size of ") + m_link.controls.slotTitle(i);
    m_link.console.PrintStatus(QStringLiteral("done!/n"));
}

void ImageTransfer::sendNumber(const QString& text) {
    for (const std::uint8_t byte : lineBytes(text))
        m_link.transport.SendByte(byte);
}

bool ImageTransfer::awaitAcceptance() {
    m_link.console.PrintStatus(QStringLiteral("Wait for acceptance from primary boot .. "));
    m_link.transport.ArmReplyTimer(true);
    m_link.state.LastChar = m_link.transport.ReadChar();
    m_link.console.PrintAnswer(m_link.state.LastChar);
    m_link.transport.ArmReplyTimer(false);
    if (m_link.state.LastChar == QLatin1String("o")) {
        m_link.console.PrintStatus(QStringLiteral(" ..OK!/n"));
        return true;
    }
    const bool refused = m_link.state.LastChar == QLatin1String("E");
    if (refused)
        m_link.state.noteStop(Outcome::Refused);
    else
        m_link.transport.noteUnexpected('o', m_link.state.LastChar);
    m_link.console.PrintStatus(refused ? QStringLiteral(" .. Error signalled back from primary boot./n")
                                       : QStringLiteral(" .. invalid char! Cancelled./n"));
    return false;
}

void ImageTransfer::sendCode(int slot) {
    const auto i = static_cast<std::size_t>(slot);
    const QString path = m_link.controls.txtFilNam[i].Tag;
    const QByteArray content = m_store ? m_store->image(path) : readImage(path);
    m_link.state.BytesTotal = HexToLong(m_link.controls.lblCodeSize[i].Caption);
    m_link.state.BytesSent = 0;
    m_link.state.SendingSlot = slot;
    m_link.transport.enableSentStatus(true);
    m_link.state.Sent[i] = std::nullopt;
    if (!m_link.state.SendingSince)
        m_link.state.SendingSince = m_link.loop.now();
    boost::crc_32_type sum;
    std::int32_t position = 0;
    bool stopped = false;
    while (position < m_link.state.BytesTotal && !stopped) {
        m_link.state.BytesSent = ++position;
        if (position <= content.size()) {
            const auto byte = static_cast<std::uint8_t>(content[position - 1]);
            m_link.transport.SendByte(byte);
            sum.process_byte(byte);
        }
        stopped = !passAfterByte();
    }
    m_link.state.BytesSent = position;
    m_link.state.BytesSentInAll += position;
    m_link.transport.timSentStatus_Timer();
    m_link.transport.enableSentStatus(false);
    m_link.state.LastSent = QStringLiteral("the code of ") + m_link.controls.slotTitle(i);
    if (stopped)
        return;
    if (content.size() != position)
        noteOtherLength(slot, content.size());
    m_link.state.Sent[i] =
        SentImage{sum.checksum(), static_cast<std::int32_t>(std::min<qsizetype>(position, content.size()))};
}

void ImageTransfer::noteOtherLength(int slot, qsizetype length) {
    QString& noted = m_link.state.OtherLength;
    if (!noted.isEmpty())
        noted += QLatin1Char(' ');
    noted += otherLengthText(m_link.controls.slotTitle(static_cast<std::size_t>(slot)), slot, length,
                             m_link.state.BytesTotal);
}

/// Yields until the line takes another byte. Returns false if the user wants the transfer to stop.
bool ImageTransfer::passAfterByte() {
    m_link.transport.pass();
    for (;;) {
        if (m_link.state.CancelRequested) {
            // The window asked for confirmation before its close.
            if (!m_link.port.isOpen() || userConfirmsCancel())
                return false;
            m_link.state.withdrawStop();
        }
        if (m_link.transport.hasRoom())
            return true;
        m_link.transport.waitForRoom();
    }
}

bool ImageTransfer::mayBeEnded() {
    // The display of a transfer that failed may still be running.
    if (!m_link.state.OperationActive || !m_link.transport.isTransferring())
        return true;
    return !m_link.state.Asking && userConfirmsCancel();
}

bool ImageTransfer::userConfirmsCancel() {
    const QString prompt =
        QStringLiteral("If you cancel now, you have to restart all over!\r\nAre you sure?");
    return m_link.show({prompt, MessageIcon::Question, MessageButtons::YesNo, QString()}) == Answer::Yes;
}

} // namespace zrk
