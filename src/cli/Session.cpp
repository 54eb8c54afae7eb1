#include "cli/Session.h"

#include "cli/Plan.h"
#include "config/AddressEntry.h"

#include <QDir>
#include <QFileInfo>

#include <algorithm>
#include <cstdio>
#include <limits>

namespace zrk {

using namespace std::chrono_literals;

namespace {

QString imageFolder(const CliOptions& options, const ProgramFacts& facts) {
    if (options.iniPath.isEmpty())
        return facts.folder;
    return QDir::toNativeSeparators(QFileInfo(options.iniPath).absolutePath());
}

bool has(const std::vector<Step>& steps, Step step) {
    return std::find(steps.cbegin(), steps.cend(), step) != steps.cend();
}

} // namespace

Session::Session(const CliOptions& options, const ProgramFacts& facts, EventLoop& loop)
    : m_options(options), m_facts(facts), m_question(loop), m_messages(m_question),
      m_waitNotice(loop, options.waitLimit), m_interrupt(loop, [this](bool ended) { interrupted(ended); }),
      m_ports(loop, PortNames(options.ports)),
      m_loader({loop, m_ports, m_messages, m_fileDialog, m_waitNotice}, imageFolder(options, facts)),
      m_progress(m_loader, m_messages, loop) {}

ExitStatus Session::run() {
    m_loader.startUp.prepare(m_facts);
    m_loader.controls.cmbComPort.ListIndex = m_options.portNumber - 1;
    m_loader.controls.chkErase.Value = m_options.erase ? 1 : 0;
    presetSlots();
    Plan plan(m_loader, m_options.steps);
    plan.checkAddresses();
    checkConfiguration();
    const QStringList announced = plan.announcement();
    for (const QString& line : announced)
        tell(line);
    copyToStandardOutput(m_loader.controls.txtStatus, [this] { m_progress.clearLine(); });
    for (const Step step : m_options.steps) {
        const bool interrupted = m_loader.state.StopReason == Outcome::Cancelled;
        const ExitStatus status = interrupted ? ExitStatus::Cancelled : runStep(step);
        if (status != ExitStatus::Done)
            return status;
    }
    if (!m_loader.transport.letOut()) {
        tell(QStringLiteral("The last bytes did not leave the port; check the cable and the board."));
        return ExitStatus::PortLost;
    }
    return ExitStatus::Done;
}

void Session::presetSlots() {
    QString& iniPath = m_loader.state.IniPath;
    if (m_options.iniPath.isEmpty()) {
        iniPath = m_loader.paths().joined(m_facts.name + QStringLiteral(".INI"));
    } else {
        iniPath = QDir::toNativeSeparators(QFileInfo(m_options.iniPath).absoluteFilePath());
        if (!FileExists(iniPath, true))
            throw UsageError(
                QStringLiteral("--ini %1: there is no such file, it cannot be read, or it is empty.")
                    .arg(m_options.iniPath));
    }
    m_loader.iniLoader.mnuLoadIni_Click();
    const QStringList remarks = m_loader.iniLoader.remarks();
    for (const QString& remark : remarks)
        tell(iniPath + QStringLiteral(": ") + remark);
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

bool Session::isSelected(int slot) const {
    return m_loader.controls.chkExeURK[static_cast<std::size_t>(slot)].isTicked();
}

void Session::requireFile(int slot) {
    if (isSelected(slot))
        return;
    const QString shown = m_loader.controls.txtFilNam[static_cast<std::size_t>(slot)].Text;
    if (!shown.isEmpty())
        throw UsageError(QStringLiteral("%1, which %2 names. Give the file with %3 or mend the INI file.")
                             .arg(shown, m_loader.state.IniPath, slotOption(slot)));
    const QString& iniPath = m_loader.state.IniPath;
    throw UsageError(QStringLiteral("No image given: name one with %1 FILE[,ADDRESS]; %2.")
                         .arg(slotOption(slot), FileExists(iniPath, true)
                                                    ? iniPath + QStringLiteral(" names none")
                                                    : QStringLiteral("there is no INI file ") + iniPath));
}

void Session::requireSizeThatFits(int slot) {
    const auto i = static_cast<std::size_t>(slot);
    const std::int64_t size = m_loader.controls.sizeInBytes(i).value_or(0);
    if (size > std::numeric_limits<std::int32_t>::max())
        throw UsageError(QStringLiteral("%1 (%2): %3 bytes are more than an image can have.")
                             .arg(m_loader.controls.txtFilNam[i].Tag.value(), slotOption(slot))
                             .arg(size));
}

/// What can be wrong before anything is sent is told before anything is sent.
void Session::checkConfiguration() {
    const std::vector<Step>& steps = m_options.steps;
    for (int slot = 0; slot < kSlotCount; ++slot)
        requireSizeThatFits(slot);
    if (has(steps, Step::Load)) {
        const bool named = !m_loader.controls.txtFilNam[kPrimaryBoot].Text.value().isEmpty();
        if (named || !isSelected(kSecondaryExecutable))
            requireFile(kPrimaryBoot);
        if (!m_loader.controls.txtFilNam[kSecondaryExecutable].Text.value().isEmpty() ||
            has(steps, Step::Start))
            requireFile(kSecondaryExecutable);
    }
    if (has(steps, Step::Flash)) {
        requireFile(kPgSibl);
        requireFile(kFlashImage);
    }
    const bool checksLater = has(steps, Step::Load) || has(steps, Step::Check);
    const bool checksFirst = steps.front() == Step::Load || steps.front() == Step::Check;
    if (checksLater && !checksFirst && !m_loader.validation.ValidateAddresses())
        throw UsageError(QStringLiteral("The addresses are wrong; nothing was sent."));
}

ExitStatus Session::runStep(Step step) {
    switch (step) {
    case Step::Load:
        m_loader.bringUp.cmdStartPrimary_Click();
        return operationStatus();
    case Step::Start:
        m_loader.bringUp.startWithoutTerminal();
        return operationStatus();
    case Step::Check:
        return check();
    case Step::Flash:
        return flash();
    }
    return ExitStatus::InternalFailure;
}

ExitStatus Session::operationStatus() const {
    return exitStatusOf(m_loader.operation.outcome());
}

ExitStatus Session::check() {
    const bool valid = m_loader.validation.ValidateAddresses();
    std::printf("%-7s%-12s%-12s\n", "index", "start", "size");
    for (const AddressList::Row& row : m_loader.controls.lvwAdrs.rows()) {
        const QString& name = m_loader.state.SlotNames.at(static_cast<std::size_t>(row.index.toInt()));
        std::printf("%-7s%-12s%-12s%s\n", qPrintable(row.index), qPrintable(row.start), qPrintable(row.size),
                    qPrintable(name));
    }
    std::fflush(stdout);
    return valid ? ExitStatus::Done : ExitStatus::Usage;
}

ExitStatus Session::flash() {
    m_loader.flash.cmdPrgFlash_Click();
    if (m_loader.state.FlashStateUnknown)
        tell(kFlashStateUnknownText);
    return operationStatus();
}

void Session::interrupted(bool ended) {
    if (ended)
        m_messages.stopAsking();
    m_loader.state.noteStop(Outcome::Cancelled);
    m_question.withdraw();
    m_loader.portControl.cmdCancel_Click();
}

} // namespace zrk
