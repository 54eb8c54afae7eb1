#include "cli/Session.h"

#include "cli/Plan.h"
#include "cli/UsageError.h"
#include "config/AddressEntry.h"

#include <QDir>
#include <QFileInfo>

namespace zrk {

using namespace std::chrono_literals;

namespace {

constexpr std::chrono::milliseconds kLastBytesLimit = 3s;

} // namespace

Session::Session(const CliOptions& options, const ProgramFacts& facts, EventLoop& loop, Output& output)
    : m_options(options), m_facts(facts), m_ini(chooseIni(options.program.iniPath, facts)), m_output(output),
      m_question(loop), m_messages(output, m_question), m_powerOnNotice(loop, output, options.waitLimit),
      m_interrupt(loop, [this](bool ended) { interrupted(ended); }),
      m_ports(loop, PortNames(options.program.ports), {.lineRate = options.program.lineRate}),
      m_loader({loop, m_ports, m_messages, m_fileDialog, m_powerOnNotice}, m_ini.folder),
      m_progress(m_loader, output, m_messages) {}

ExitStatus Session::run() {
    m_loader.startUp.prepare(m_facts);
    m_loader.controls.cmbComPort.ListIndex = m_options.program.portNumber - 1;
    m_loader.controls.chkErase.Value = m_options.erase ? 1 : 0;
    presetSlots();
    Plan plan(m_loader, m_options.steps);
    plan.check();
    const QStringList announced = plan.announcement();
    for (const QString& line : announced)
        m_output.tell(line);
    m_loader.controls.txtStatus.onEdit(
        [this](qsizetype /*removed*/, const QString& inserted) { m_output.console(inserted); });
    for (const StepFacts* step : m_options.steps) {
        const bool interrupted = m_loader.state.StopReason == Outcome::Cancelled;
        const ExitStatus status = interrupted ? ExitStatus::Cancelled : step->run(m_loader, m_output);
        if (status != ExitStatus::Done)
            return status;
    }
    if (!m_loader.transport.letOut(kLastBytesLimit, kLastBytesLimit)) {
        m_output.tell(
            QStringLiteral("The last bytes did not leave the port; check the cable and the board."));
        return ExitStatus::PortLost;
    }
    return ExitStatus::Done;
}

void Session::presetSlots() {
    if (!m_options.program.iniPath.isEmpty() && !FileExists(m_ini.path, true))
        throw UsageError(QStringLiteral("--ini %1: there is no such file, it cannot be read, or it is empty.")
                             .arg(m_options.program.iniPath));
    m_loader.state.IniPath = m_ini.path;
    m_loader.iniLoader.mnuLoadIni_Click();
    const QStringList remarks = m_loader.iniLoader.remarks();
    for (const QString& remark : remarks)
        m_output.tell(m_ini.path + QStringLiteral(": ") + remark);
    for (int slot = 0; slot < kSlotCount; ++slot) {
        const QString& value = m_options.slotValues[static_cast<std::size_t>(slot)];
        if (!value.isEmpty())
            presetSlot(slot, value);
    }
}

/// Fills a slot as an INI value does, but relative to the folder the user is in, and with an error where
/// the window would show what is wrong.
void Session::presetSlot(int slot, const QString& value) {
    const qsizetype comma = value.indexOf(QLatin1Char(','));
    const QString file = comma < 0 ? value : value.left(comma);
    if (!FileExists(file, true))
        throw UsageError(QStringLiteral("%1 %2: there is no such file, it cannot be read, or it is empty.")
                             .arg(slotOption(slot), file));
    const QString address =
        comma < 0 ? QStringLiteral("0") : value.mid(comma + 1).section(QLatin1Char(','), 0, 0).trimmed();
    const QString fault = addressFault(slot, address);
    if (!fault.isEmpty())
        throw UsageError(QStringLiteral("%1: %2").arg(slotOption(slot), fault));
    m_loader.iniLoader.applyFile(slot, QDir::toNativeSeparators(QFileInfo(file).absoluteFilePath()), address);
}

void Session::interrupted(bool ended) {
    if (ended)
        m_messages.stopAsking();
    m_loader.state.noteStop(Outcome::Cancelled);
    m_question.withdraw();
    m_loader.portControl.cmdCancel_Click();
}

} // namespace zrk
