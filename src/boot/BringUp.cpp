#include "boot/BringUp.h"

#include "boot/BootRomHandshake.h"
#include "boot/ImageCommands.h"
#include "boot/ImageTransfer.h"
#include "config/AddressValidation.h"
#include "config/ImageSlots.h"
#include "serial/ComPort.h"
#include "serial/PortErrors.h"
#include "serial/StatusConsole.h"
#include "serial/TerminalMode.h"
#include "serial/Transport.h"

namespace zrk {

BringUp::BringUp(SharedState& state, Controls& controls, StatusConsole& console, Transport& transport,
                 ComPort& port, TerminalMode& terminal, AddressValidation& validation,
                 BootRomHandshake& handshake, ImageTransfer& transfer, ImageCommands& commands,
                 LongOperation& operation, MessageBoxes& boxes)
    : m_state(state), m_controls(controls), m_console(console), m_transport(transport), m_port(port),
      m_terminal(terminal), m_validation(validation), m_handshake(handshake), m_transfer(transfer),
      m_commands(commands), m_operation(operation), m_boxes(boxes) {}

void BringUp::cmdStartPrimary_Click() {
    m_operation.run([this] { return load(); }, [this] { m_operation.abort(m_controls.cmdStartPrimary); });
}

LongOperation::End BringUp::load() {
    if (!m_validation.ValidateAddresses())
        return LongOperation::End::Rejected;
    m_operation.begin();
    m_controls.cmdStartPrimary.Enabled = false;
    m_controls.cmdStartSecondary.Enabled = false;
    m_controls.cmdURK.Enabled = false;
    m_port.CloseComPort();
    m_terminal.switchTo(false);
    m_port.OpenComPort();
    if (m_controls.chkExeURK[kPrimaryBoot].isTicked() && !loadPrimary())
        return LongOperation::End::Abort;
    if (m_controls.chkExeURK[kSecondaryExecutable].isTicked()) {
        if (!loadSecondary())
            return LongOperation::End::Abort;
        m_controls.cmdURK.Enabled = true;
        m_controls.cmdStartSecondary.Enabled = true;
    } else {
        m_terminal.switchTo(true); // the primary boot's own output is then seen
    }
    m_operation.finish();
    m_controls.cmdStartPrimary.Enabled = true;
    const bool cutShort = m_state.CancelRequested && !m_controls.chkExeURK[kSecondaryExecutable].isTicked();
    return cutShort ? LongOperation::End::Stopped : LongOperation::End::Done;
}

bool BringUp::loadPrimary() {
    return m_handshake.run() && m_transfer.SendImage(kPrimaryBoot);
}

bool BringUp::loadSecondary() {
    m_transport.ArmReplyTimer(true);
    m_console.PrintStatus(QStringLiteral("/n--- Loading Secondary executable ---/n"));
    m_console.PrintStatus(QStringLiteral("Wait for 'X' .. "));
    if (!m_transport.ExpectChar(QStringLiteral("X")))
        return false;
    m_transport.ArmReplyTimer(false);
    m_console.PrintStatus(QStringLiteral(" .. found!/n"));
    return m_commands.SendImageCommand(kSecondaryExecutable);
}

void BringUp::cmdStartSecondary_Click() {
    if (m_state.OperationActive || m_startingSecondary)
        return;
    m_startingSecondary = true;
    try {
        sendStartCommand();
        m_terminal.cmdTerminal_Click();
    } catch (const RuntimeFailure& failure) {
        showPortError(m_state, m_boxes, m_port.CommPort(), PortErrorHint::OtherIo, failure);
        m_port.CloseComPort();
        m_console.PrintStatus(QStringLiteral("/n--- closing port ---/n"));
        m_controls.cmdURK.Enabled = false;
        m_controls.cmdStartSecondary.Enabled = false;
    }
    m_startingSecondary = false;
}

void BringUp::sendStartCommand() {
    m_terminal.switchTo(false);
    m_console.PrintStatus(QStringLiteral("/n-- Starting Secondary Executable --/n"));
    m_transport.SendString(QStringLiteral("d"));
}

} // namespace zrk
