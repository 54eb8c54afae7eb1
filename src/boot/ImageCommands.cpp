#include "boot/ImageCommands.h"

#include "boot/ImageStore.h"
#include "boot/ImageTransfer.h"
#include "config/AddressValidation.h"
#include "config/ImageSlots.h"

#include <QLocale>

namespace zrk {
namespace {

QString commandLetter(int slot) {
    if (slot < kPrimaryBoot || slot > kKernel)
        throw RuntimeFailure(FailureKind::Index,
                             QStringLiteral("There is no download command for image slot %1.").arg(slot));
    const char letter = factsOf(slot).command;
    return letter == 0 ? QString() : QString(QLatin1Char(letter));
}

} // namespace

ImageCommands::ImageCommands(Link& link, AddressValidation& validation, ImageTransfer& transfer)
    : m_link(link), m_validation(validation), m_transfer(transfer) {}

bool ImageCommands::SendImageCommand(int slot) {
    const QString letter = commandLetter(slot);
    requireSendable(m_link.controls, slot);
    m_link.console.PrintStatus(QStringLiteral("-- Sending command .. ") + letter + QStringLiteral(" .."));
    m_link.transport.SendString(letter);
    m_link.console.PrintStatus(QStringLiteral("done!/n"));
    if (!m_transfer.SendImage(slot)) {
        m_link.console.PrintStatus(QStringLiteral("Sending code aborted...!/n"));
        return false;
    }
    m_link.console.PrintStatus(QStringLiteral("Expect final 't' .. "));
    m_link.transport.ArmReplyTimer(true);
    m_link.state.LastChar = m_link.transport.ReadChar();
    m_link.console.PrintAnswer(m_link.state.LastChar);
    m_link.transport.ArmReplyTimer(false);
    const bool confirmed = m_link.state.LastChar == QLatin1String("t");
    if (confirmed) {
        m_link.console.PrintStatus(QStringLiteral(" .. found, "));
        m_link.console.PrintStatus(QStringLiteral("/n---- ") +
                                   m_link.state.SlotNames[static_cast<std::size_t>(slot)] +
                                   QStringLiteral(" loaded. ---/n"));
    } else {
        m_link.transport.noteUnexpected('t', m_link.state.LastChar);
        m_link.console.PrintStatus(QStringLiteral("invalid char! Cancelled./n"));
    }
    m_link.console.PrintStatus(QStringLiteral("/n"));
    return confirmed;
}

void ImageCommands::cmdURK_Click() {
    const std::int64_t before = m_link.state.BytesSentInAll;
    m_link.operation.run({[this] { return download(); }, [this] { abortDownload(); },
                          Operation::Report::DownloadProblem,
                          [this, before](const QString& time) {
                              if (m_number == 0)
                                  return QStringLiteral("No image was ticked: nothing was sent.");
                              return QStringLiteral("Downloaded %1 image%2: %3 bytes in %4, confirmed.")
                                  .arg(m_number)
                                  .arg(QLatin1String(m_number == 1 ? "" : "s"),
                                       QLocale().toString(m_link.state.BytesSentInAll - before), time);
                          }});
}

Operation::End ImageCommands::download() {
    if (!m_validation.ValidateAddresses())
        return Operation::End::Rejected;
    m_link.operation.begin();
    enableButtons(false);
    m_link.terminal.switchTo(false);
    m_number = 0;
    for (const int slot : {kUBoot, kRootFs, kKernel}) {
        if (!m_link.controls.chkExeURK[static_cast<std::size_t>(slot)].isTicked())
            continue;
        ++m_number;
        notePlaceOf(slot);
        if (!SendImageCommand(slot))
            return Operation::End::Abort;
    }
    m_link.operation.finish();
    enableButtons(true);
    return Operation::End::Done;
}

/// Asks again each time: the user may choose or untick an image while those before it are sent.
void ImageCommands::notePlaceOf(int slot) {
    Series place{m_number, m_number, 0};
    for (int later = slot + 1; later <= kKernel; ++later) {
        const auto i = static_cast<std::size_t>(later);
        if (!m_link.controls.chkExeURK[i].isTicked())
            continue;
        ++place.count;
        place.bytesBehind += m_link.controls.sizeInBytes(i).value_or(0);
    }
    m_link.state.Images = place;
}

void ImageCommands::abortDownload() {
    // Also disarms the reply timer: a time-out box after the end of the operation helps no user.
    m_link.operation.abort(m_link.controls.cmdStartPrimary);
    m_link.controls.cmdURK.Enabled = false;
}

void ImageCommands::enableButtons(bool enabled) {
    m_link.controls.cmdURK.Enabled = enabled;
    m_link.controls.cmdStartPrimary.Enabled = enabled;
    m_link.controls.cmdStartSecondary.Enabled = enabled;
}

} // namespace zrk
