#include "flash/FlashProgramming.h"

#include "boot/BootRomHandshake.h"
#include "boot/ImageTransfer.h"
#include "config/HexConversions.h"
#include "config/ImageSlots.h"
#include "flash/FlashFrames.h"
#include "platform/MessageBoxes.h"
#include "serial/ComPort.h"
#include "serial/StatusConsole.h"
#include "serial/TerminalMode.h"
#include "serial/Transport.h"

namespace zrk {

FlashProgramming::FlashProgramming(SharedState& state, Controls& controls, StatusConsole& console,
                                   Transport& transport, ComPort& port, TerminalMode& terminal,
                                   BootRomHandshake& handshake, ImageTransfer& transfer, FlashFrames& frames,
                                   Operation& operation, MessageBoxes& boxes)
    : m_state(state), m_controls(controls), m_console(console), m_transport(transport), m_port(port),
      m_terminal(terminal), m_handshake(handshake), m_transfer(transfer), m_frames(frames),
      m_operation(operation), m_boxes(boxes) {}

void FlashProgramming::cmdPrgFlash_Click() {
    m_operation.run({[this] { return program(); }, [this] { abort(); }});
}

Operation::End FlashProgramming::program() {
    m_operation.begin();
    m_headerStarted = false;
    m_controls.cmdPrgFlash.Enabled = false;
    m_port.CloseComPort();
    m_terminal.switchTo(false);
    m_port.OpenComPort();
    if (!m_controls.chkExeURK[kPgSibl].isTicked()) {
        m_state.MessageText = QStringLiteral("No pg_sibl binary specified in INI file");
        (void)m_boxes.show(
            {m_state.MessageText, MessageIcon::Exclamation, MessageButtons::Ok, QStringLiteral("Error")});
        // The box may have been open for long; only what the board says from now on counts.
        m_port.discardReceived();
    }
    const bool programmed = m_handshake.run() && m_transfer.SendImage(kPgSibl) && wake() &&
                            requestVersion() && sendHeader() && sendData() && sendEndOfData() &&
                            sendComplete();
    if (!programmed)
        return Operation::End::Abort;
    m_operation.finish();
    m_controls.cmdPrgFlash.Enabled = true;
    m_port.CloseComPort();
    return Operation::End::Done;
}

bool FlashProgramming::wake() {
    m_console.PrintStatus(QStringLiteral("Sending 'F' .. "));
    m_transport.SendString(QStringLiteral("F"));
    m_console.PrintStatus(QStringLiteral("done!/n"));
    m_console.PrintStatus(QStringLiteral("Expect 'F' .. "));
    {
        const WaitNote note = m_transport.noteWait(QStringLiteral("The board starts pg_sibl"));
        if (!m_transport.ExpectChar(QStringLiteral("F")))
            return false;
    }
    m_console.PrintStatus(QStringLiteral(" .. found!/n"));
    m_console.PrintStatus(QStringLiteral("Sending 'S' .. "));
    m_transport.SendString(QStringLiteral("S"));
    m_console.PrintStatus(QStringLiteral("done!/n"));
    return true;
}

bool FlashProgramming::requestVersion() {
    m_console.PrintStatus(QStringLiteral("Sending VERSION REQUEST .. "));
    m_frames.SendCommandFrame(FlashFrames::kVersionRequest);
    m_console.PrintStatus(QStringLiteral("done!/n"));
    m_console.PrintStatus(QStringLiteral("Reading VERSION INFORMATION frame .. "));
    const WaitNote note = m_transport.noteWait(QStringLiteral("The board tells pg_sibl's version"));
    return m_frames.readVersionInformation();
}

bool FlashProgramming::sendHeader() {
    m_console.PrintStatus(QStringLiteral("Sending NAND FLASH HEADER frame .. "));
    m_headerStarted = true;
    m_frames.sendHeaderStart(m_controls.txtStartAddress[kFlashImage].Text);
    m_frames.sendHeaderSize(m_controls.sizeOf(kFlashImage));
    const bool erase = m_controls.chkErase.isTicked();
    if (erase)
        m_console.PrintStatus(QStringLiteral("(ERASING FLASH) .. "));
    m_frames.sendHeaderEnd(erase);
    return awaitAck(erase ? QStringLiteral("The board erases the flash")
                          : QStringLiteral("The board prepares the flash"));
}

bool FlashProgramming::sendData() {
    m_console.PrintStatus(QStringLiteral("Sending NAND FLASH DATA frame .. "));
    m_frames.sendDataStart(HexToLong(m_controls.lblCodeSize[kFlashImage].Caption));
    // Its result tells of an acceptance, which a payload does not have.
    (void)m_transfer.SendImage(kFlashImage);
    m_frames.sendDataEnd();
    // The abort closes the port, which drops what is still queued; a frame that was begun is ended first.
    if (m_state.CancelRequested)
        m_transport.letOut();
    return awaitAck(QStringLiteral("The board programs the flash"));
}

bool FlashProgramming::sendEndOfData() {
    m_console.PrintStatus(QStringLiteral("Sending END-OF-DATA frame .. "));
    m_frames.sendEndOfData();
    return awaitAck(QStringLiteral("The board finishes the data"));
}

bool FlashProgramming::sendComplete() {
    m_console.PrintStatus(QStringLiteral("Sending NAND FLASH COMPLETE.. "));
    m_frames.SendCommandFrame(FlashFrames::kComplete);
    return awaitAck(QStringLiteral("The board completes"));
}

bool FlashProgramming::awaitAck(const QString& what) {
    const WaitNote note = m_transport.noteWait(what);
    return m_frames.GetAck();
}

void FlashProgramming::abort() {
    m_operation.abort(m_controls.cmdPrgFlash);
    m_state.FlashStateUnknown = m_headerStarted;
}

} // namespace zrk
