#include "boot/BringUp.h"

#include "boot/BootRomHandshake.h"
#include "boot/ImageCommands.h"
#include "boot/ImageTransfer.h"
#include "config/AddressValidation.h"
#include "config/ImageSlots.h"
#include "serial/ComPort.h"
#include "serial/StatusConsole.h"
#include "serial/TerminalMode.h"
#include "serial/Transport.h"

namespace zrk {

BringUp::BringUp(SharedState& state, Controls& controls, StatusConsole& console, Transport& transport,
                 ComPort& port, TerminalMode& terminal, AddressValidation& validation,
                 BootRomHandshake& handshake, ImageTransfer& transfer, ImageCommands& commands,
                 Operation& operation)
    : m_state(state), m_controls(controls), m_console(console), m_transport(transport), m_port(port),
      m_terminal(terminal), m_validation(validation), m_handshake(handshake), m_transfer(transfer),
      m_commands(commands), m_operation(operation) {}

void BringUp::cmdStartPrimary_Click() {
    m_operation.run({[this] { return load(); }, [this] { m_operation.abort(m_controls.cmdStartPrimary); }});
}

Operation::End BringUp::load() {
    using End = Operation::End;
    if (!m_validation.ValidateAddresses())
        return End::Rejected;
    m_operation.begin();
    m_controls.cmdStartPrimary.Enabled = false;
    m_controls.cmdStartSecondary.Enabled = false;
    m_controls.cmdURK.Enabled = false;
    m_port.CloseComPort();
    m_terminal.switchTo(false);
    m_port.OpenComPort();
    End end = End::Done;
    if (m_controls.chkExeURK[kPrimaryBoot].isTicked() && !loadPrimary())
        return End::Abort;
    if (m_controls.chkExeURK[kSecondaryExecutable].isTicked()) {
        if (!loadSecondary())
            return End::Abort;
        m_controls.cmdURK.Enabled = true;
        m_controls.cmdStartSecondary.Enabled = true;
    } else {
        // A confirmed cancel cut the transfer short, or there is no terminal to see the primary boot in.
        const bool cutShort = m_state.CancelRequested;
        if (!m_terminal.switchTo(true) || cutShort)
            end = End::Stopped;
    }
    m_operation.finish();
    m_controls.cmdStartPrimary.Enabled = true;
    return end;
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
    start([this] {
        sendStartCommand();
        m_terminal.cmdTerminal_Click();
        return m_state.TerminalMode ? Operation::End::Done : Operation::End::Stopped;
    });
}

void BringUp::startWithoutTerminal() {
    start([this] {
        m_port.OpenComPort();
        sendStartCommand();
        return Operation::End::Done;
    });
}

void BringUp::start(const std::function<Operation::End()>& body) {
    const auto abort = [this] {
        m_port.CloseComPort();
        m_console.PrintStatus(QStringLiteral("/n--- closing port ---/n"));
        m_controls.cmdURK.Enabled = false;
        m_controls.cmdStartSecondary.Enabled = false;
    };
    m_operation.run({body, abort, Operation::Report::IoProblem});
}

void BringUp::sendStartCommand() {
    m_terminal.switchTo(false);
    m_console.PrintStatus(QStringLiteral("/n-- Starting Secondary Executable --/n"));
    m_transport.SendString(QStringLiteral("d"));
}

} // namespace zrk
