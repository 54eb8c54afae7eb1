#include "flash/FlashProgramming.h"

#include "boot/BootRomHandshake.h"
#include "boot/ImageStore.h"
#include "boot/ImageTransfer.h"
#include "config/HexConversions.h"
#include "config/ImageSlots.h"
#include "platform/SecondsText.h"

#include <QLocale>

namespace zrk {

using namespace std::chrono_literals;

namespace {

constexpr std::chrono::milliseconds kLetOutLimit = 2s;
constexpr std::chrono::milliseconds kLetOutStall = 300ms;

/// A note of the awaited answer, which ends the operation when the user's limit for it runs out.
class AnswerWait {
  public:
    AnswerWait(Link& link, Awaited kind, const QString& what, std::optional<std::chrono::milliseconds> limit)
        : m_note(link.transport.noteWait(kind, what)) {
        if (!limit)
            return;
        m_timer = link.loop.createTimer([&link, what, time = *limit] {
            if (link.state.CancelRequested)
                return;
            link.state.requestStop(Outcome::LimitReached);
            link.state.StopText = QStringLiteral("No answer within %1 s. %2.").arg(secondsText(time), what);
        });
        m_timer->start(*limit);
    }

  private:
    PendingWait m_note;
    std::unique_ptr<Timer> m_timer;
};

} // namespace

FlashProgramming::FlashProgramming(Link& link, BootRomHandshake& handshake, ImageTransfer& transfer)
    : m_link(link), m_handshake(handshake), m_transfer(transfer), m_frames(link.transport, link.console) {}

void FlashProgramming::cmdPrgFlash_Click() {
    m_link.operation.run({[this] { return program(); }, [this] { abort(); },
                          Operation::Report::DownloadProblem,
                          [this](const QString& time) {
                              const auto& sent = m_link.state.Sent[kFlashImage].value();
                              return QStringLiteral("Flash programmed: %1 bytes in %2, acknowledged.")
                                  .arg(QLocale().toString(sent ? sent->bytes : 0), time);
                          }});
}

Operation::End FlashProgramming::program() {
    m_link.operation.begin();
    m_headerSent = false;
    m_link.state.PgSiblVersion = QString();
    m_link.controls.cmdPrgFlash.Enabled = false;
    for (const int slot : {kPgSibl, kFlashImage})
        requireSendable(m_link.controls, slot);
    m_link.state.Remark = caution();
    m_link.port.CloseComPort();
    m_link.terminal.switchTo(false);
    m_link.port.OpenComPort();
    if (!m_link.controls.chkExeURK[kPgSibl].isTicked())
        m_link.tell(QStringLiteral("No pg_sibl binary specified in INI file"), MessageIcon::Exclamation,
                    QStringLiteral("Error"));
    const bool programmed = m_handshake.run() && m_transfer.SendImage(kPgSibl) && wake() &&
                            requestVersion() && sendHeader() && sendData() && sendEndOfData() &&
                            sendComplete();
    if (!programmed)
        return Operation::End::Abort;
    m_link.operation.finish();
    m_link.controls.cmdPrgFlash.Enabled = true;
    m_link.port.CloseComPort();
    return Operation::End::Done;
}

/// Returns the remark for before the power cycle: file and address are checked only with the header.
StatusRemark FlashProgramming::caution() const {
    if (!m_link.controls.sizeInBytes(kFlashImage))
        return {QStringLiteral("No flash image is chosen: nothing can be programmed."),
                RemarkSeverity::Warning};
    return {m_link.controls.AddressRemark[kFlashImage].value(), RemarkSeverity::Warning};
}

bool FlashProgramming::wake() {
    m_link.console.PrintStatus(QStringLiteral("Sending 'F' .. "));
    m_link.transport.SendString(QStringLiteral("F"));
    m_link.console.PrintStatus(QStringLiteral("done!/n"));
    m_link.console.PrintStatus(QStringLiteral("Expect 'F' .. "));
    {
        const AnswerWait wait(m_link, Awaited::PgSibl, QStringLiteral("The board starts pg_sibl"),
                              m_answerLimit);
        if (!m_link.transport.ExpectChar(QStringLiteral("F")))
            return false;
    }
    m_link.console.PrintStatus(QStringLiteral(" .. found!/n"));
    m_link.console.PrintStatus(QStringLiteral("Sending 'S' .. "));
    m_link.transport.SendString(QStringLiteral("S"));
    m_link.console.PrintStatus(QStringLiteral("done!/n"));
    return true;
}

bool FlashProgramming::requestVersion() {
    m_link.console.PrintStatus(QStringLiteral("Sending VERSION REQUEST .. "));
    m_frames.SendCommandFrame(FlashFrames::kVersionRequest);
    m_link.console.PrintStatus(QStringLiteral("done!/n"));
    m_link.console.PrintStatus(QStringLiteral("Reading VERSION INFORMATION frame .. "));
    const AnswerWait wait(m_link, Awaited::Version, QStringLiteral("The board reports pg_sibl's version"),
                          m_answerLimit);
    const auto version = m_frames.readVersionInformation();
    if (!m_link.state.CancelRequested) // which reads as zeros
        m_link.state.PgSiblVersion = version.value_or(QString());
    return version.has_value();
}

bool FlashProgramming::sendHeader() {
    m_link.console.PrintStatus(QStringLiteral("Sending NAND FLASH HEADER frame .. "));
    m_frames.sendHeaderStart(m_link.controls.txtStartAddress[kFlashImage].Text);
    m_frames.sendHeaderSize(m_link.controls.sizeOf(kFlashImage));
    const bool erase = m_link.controls.chkErase.isTicked();
    if (erase)
        m_link.console.PrintStatus(QStringLiteral("(ERASING FLASH) .. "));
    m_frames.sendHeaderEnd(erase);
    m_headerSent = true;
    return erase ? awaitAck(Awaited::Erase, QStringLiteral("The board erases the flash"))
                 : awaitAck(Awaited::Prepare, QStringLiteral("The board prepares the flash"));
}

bool FlashProgramming::sendData() {
    m_link.console.PrintStatus(QStringLiteral("Sending NAND FLASH DATA frame .. "));
    m_frames.sendDataStart(HexToLong(m_link.controls.lblCodeSize[kFlashImage].Caption));
    // Its result is the acceptance, which a payload does not have.
    (void)m_transfer.SendImage(kFlashImage);
    m_frames.sendDataEnd();
    // The abort closes the port, which drops what is still queued; so first end a frame that was begun.
    if (m_link.state.CancelRequested)
        (void)m_link.transport.letOut(kLetOutLimit, kLetOutStall);
    return awaitAck(Awaited::Program, QStringLiteral("The board programs the flash"));
}

bool FlashProgramming::sendEndOfData() {
    m_link.console.PrintStatus(QStringLiteral("Sending END-OF-DATA frame .. "));
    m_frames.sendEndOfData();
    return awaitAck(Awaited::Finish, QStringLiteral("The board finishes the data"));
}

bool FlashProgramming::sendComplete() {
    m_link.console.PrintStatus(QStringLiteral("Sending NAND FLASH COMPLETE.. "));
    m_frames.SendCommandFrame(FlashFrames::kComplete);
    return awaitAck(Awaited::Complete, QStringLiteral("The board completes"));
}

bool FlashProgramming::awaitAck(Awaited kind, const QString& what) {
    const AnswerWait wait(m_link, kind, what, m_answerLimit);
    return m_frames.GetAck();
}

void FlashProgramming::abort() {
    m_link.operation.abort(m_link.controls.cmdPrgFlash);
    m_link.state.FlashStateUnknown = m_headerSent;
}

} // namespace zrk
