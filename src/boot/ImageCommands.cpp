#include "boot/ImageCommands.h"

#include "boot/ImageTransfer.h"
#include "config/AddressValidation.h"
#include "config/ImageSlots.h"
#include "serial/ComPort.h"
#include "serial/StatusConsole.h"
#include "serial/TerminalMode.h"
#include "serial/Transport.h"

namespace zrk {
namespace {

QString commandLetter(int slot) {
    static constexpr std::array<const char*, 5> kLetters{"", "p", "u", "r", "k"};
    if (slot < 0 || slot >= static_cast<int>(kLetters.size()))
        throw RuntimeFailure(FailureKind::Index,
                             QStringLiteral("There is no download command for image slot %1.").arg(slot));
    return QString::fromLatin1(kLetters[static_cast<std::size_t>(slot)]);
}

} // namespace

ImageCommands::ImageCommands(SharedState& state, Controls& controls, StatusConsole& console,
                             Transport& transport, ComPort& port, TerminalMode& terminal,
                             AddressValidation& validation, ImageTransfer& transfer, Operation& operation)
    : m_state(state), m_controls(controls), m_console(console), m_transport(transport), m_port(port),
      m_terminal(terminal), m_validation(validation), m_transfer(transfer), m_operation(operation) {}

bool ImageCommands::SendImageCommand(int slot) {
    const QString letter = commandLetter(slot);
    m_console.PrintStatus(QStringLiteral("-- Sending command .. ") + letter + QStringLiteral(" .."));
    m_transport.SendString(letter);
    m_console.PrintStatus(QStringLiteral("done!/n"));
    if (!m_transfer.SendImage(slot)) {
        m_console.PrintStatus(QStringLiteral("Sending code aborted...!/n"));
        return false;
    }
    m_console.PrintStatus(QStringLiteral("Expect final 't' .. "));
    m_transport.ArmReplyTimer(true);
    m_state.LastChar = m_transport.ReadChar();
    m_console.PrintStatus(m_state.LastChar);
    m_transport.ArmReplyTimer(false);
    const bool confirmed = m_state.LastChar == QLatin1String("t");
    if (confirmed) {
        m_console.PrintStatus(QStringLiteral(" .. found, "));
        m_console.PrintStatus(QStringLiteral("/n---- ") + m_state.SlotNames[static_cast<std::size_t>(slot)] +
                              QStringLiteral(" loaded. ---/n"));
    } else {
        m_console.PrintStatus(QStringLiteral("invalid char! Cancelled./n"));
    }
    m_console.PrintStatus(QStringLiteral("/n"));
    return confirmed;
}

void ImageCommands::cmdURK_Click() {
    m_operation.run({[this] { return download(); }, [this] { abortDownload(); }});
}

Operation::End ImageCommands::download() {
    if (!m_validation.ValidateAddresses())
        return Operation::End::Rejected;
    m_operation.begin();
    enableButtons(false);
    m_terminal.switchTo(false);
    for (const int slot : {kUBoot, kRootFs, kKernel}) {
        if (m_controls.chkExeURK[static_cast<std::size_t>(slot)].isTicked() && !SendImageCommand(slot))
            return Operation::End::Abort;
    }
    m_operation.finish();
    enableButtons(true);
    return Operation::End::Done;
}

void ImageCommands::abortDownload() {
    // Also disarms the reply timer: a time-out box after the operation has ended helps nobody.
    m_operation.abort(m_controls.cmdStartPrimary);
    m_controls.cmdURK.Enabled = false;
}

void ImageCommands::enableButtons(bool enabled) {
    m_controls.cmdURK.Enabled = enabled;
    m_controls.cmdStartPrimary.Enabled = enabled;
    m_controls.cmdStartSecondary.Enabled = enabled;
}

} // namespace zrk
