#include "boot/BringUp.h"

#include "boot/BootRomHandshake.h"
#include "boot/ImageCommands.h"
#include "boot/ImageStore.h"
#include "boot/ImageTransfer.h"
#include "config/AddressValidation.h"
#include "config/ImageSlots.h"

#include <QLocale>

namespace zrk {

BringUp::BringUp(Link& link, AddressValidation& validation, BootRomHandshake& handshake,
                 ImageTransfer& transfer, ImageCommands& commands)
    : m_link(link), m_validation(validation), m_handshake(handshake), m_transfer(transfer),
      m_commands(commands) {}

void BringUp::cmdStartPrimary_Click() {
    load(Then::Terminal);
}

void BringUp::loadForCommand() {
    load(Then::Command);
}

void BringUp::load(Then then) {
    const std::int64_t before = m_link.state.BytesSentInAll;
    m_link.operation.run({[this, then] { return loadTicked(then); },
                          [this] { m_link.operation.abort(m_link.controls.cmdStartPrimary); },
                          Operation::Report::DownloadProblem,
                          [this, before](const QString& time) {
                              const bool confirmed =
                                  m_link.controls.chkExeURK[kSecondaryExecutable].isTicked();
                              if (!confirmed && !m_link.controls.chkExeURK[kPrimaryBoot].isTicked())
                                  return QStringLiteral("No image was ticked: nothing was sent.");
                              return QStringLiteral("Loaded: %1 bytes in %2%3.")
                                  .arg(QLocale().toString(m_link.state.BytesSentInAll - before), time,
                                       confirmed ? QStringLiteral(", confirmed") : QString());
                          }});
}

Operation::End BringUp::loadTicked(Then then) {
    using End = Operation::End;
    if (!m_validation.ValidateAddresses())
        return End::Rejected;
    m_link.operation.begin();
    m_link.controls.cmdStartPrimary.Enabled = false;
    m_link.controls.cmdStartSecondary.Enabled = false;
    m_link.controls.cmdURK.Enabled = false;
    if (m_link.controls.chkExeURK[kPrimaryBoot].isTicked())
        requireSendable(m_link.controls, kPrimaryBoot);
    m_link.port.CloseComPort();
    m_link.terminal.switchTo(false);
    m_link.port.OpenComPort();
    End end = End::Done;
    if (m_link.controls.chkExeURK[kPrimaryBoot].isTicked() && !loadPrimary())
        return End::Abort;
    if (m_link.controls.chkExeURK[kSecondaryExecutable].isTicked()) {
        if (!loadSecondary())
            return End::Abort;
        m_link.controls.cmdURK.Enabled = true;
        m_link.controls.cmdStartSecondary.Enabled = true;
    } else if (then == Then::Command) {
        m_link.transport.ArmReplyTimer(true);
        if (!takeReadiness())
            return End::Abort;
    } else {
        // A confirmed cancel cut the transfer short, or there is no terminal to show the primary boot.
        const bool cutShort = m_link.state.CancelRequested;
        if (!m_link.terminal.switchTo(true) || cutShort)
            end = End::Stopped;
    }
    m_link.operation.finish();
    m_link.controls.cmdStartPrimary.Enabled = true;
    return end;
}

bool BringUp::loadPrimary() {
    return m_handshake.run() && m_transfer.SendImage(kPrimaryBoot);
}

bool BringUp::loadSecondary() {
    m_link.transport.ArmReplyTimer(true);
    m_link.console.PrintStatus(QStringLiteral("/n--- Loading Secondary executable ---/n"));
    return takeReadiness() && m_commands.SendImageCommand(kSecondaryExecutable);
}

/// Runs within the reply interval that is running already.
bool BringUp::takeReadiness() {
    m_link.console.PrintStatus(QStringLiteral("Wait for 'X' .. "));
    if (!m_link.transport.ExpectChar(QStringLiteral("X")))
        return false;
    m_link.transport.ArmReplyTimer(false);
    m_link.console.PrintStatus(QStringLiteral(" .. found!/n"));
    return true;
}

void BringUp::cmdStartSecondary_Click() {
    start([this] {
        sendStartCommand();
        m_link.terminal.cmdTerminal_Click();
        return m_link.state.TerminalMode ? Operation::End::Done : Operation::End::Stopped;
    });
}

void BringUp::startWithoutTerminal() {
    start([this] {
        m_link.port.OpenComPort();
        sendStartCommand();
        return Operation::End::Done;
    });
}

void BringUp::start(const std::function<Operation::End()>& body) {
    const auto abort = [this] {
        m_link.port.CloseComPort();
        m_link.console.PrintStatus(QStringLiteral("/n--- closing port ---/n"));
        m_link.controls.cmdURK.Enabled = false;
        m_link.controls.cmdStartSecondary.Enabled = false;
    };
    m_link.operation.run({body, abort, Operation::Report::IoProblem,
                          [](const QString&) { return QStringLiteral("The start command has been sent."); }});
}

void BringUp::sendStartCommand() {
    m_link.terminal.switchTo(false);
    m_link.console.PrintStatus(QStringLiteral("/n-- Starting Secondary Executable --/n"));
    m_link.transport.SendString(QStringLiteral("d"));
}

} // namespace zrk
