#include "cli/Plan.h"

#include "cli/GivenFile.h"
#include "cli/Options.h"
#include "cli/RunFacts.h"
#include "cli/UsageError.h"
#include "config/HexConversions.h"
#include "files/PrintableText.h"
#include "loader/Loader.h"
#include "loader/TransferRate.h"
#include "machine/PortMessages.h"

#include <algorithm>
#include <limits>
#include <string_view>

namespace zrk {
namespace {

bool hasStep(StepList::const_iterator begin, StepList::const_iterator end, const char* step) {
    return std::any_of(begin, end,
                       [step](const StepCall& one) { return std::string_view(one.facts->name) == step; });
}

} // namespace

void Plan::check() {
    checkAddresses();
    checkSizes();
    for (m_checked = m_steps.cbegin(); m_checked != m_steps.cend(); ++m_checked)
        m_checked->facts->require(*this, m_checked->argument);
    const auto checks = [](const StepCall& step) { return step.facts->checksAddresses; };
    const bool checksLater = std::any_of(m_steps.cbegin(), m_steps.cend(), checks);
    if (checksLater && !checks(m_steps.front()) && !m_loader.validation.ValidateAddresses())
        throw UsageError(QStringLiteral("The addresses are wrong; nothing was sent."));
}

void Plan::checkAddresses() {
    for (int slot = 0; slot < kSlotCount; ++slot) {
        const QString& fault = m_loader.iniLoader.addressFaultOf(slot);
        if (fault.isEmpty() || !isSelected(slot))
            continue;
        if (uses(slot))
            throw UsageError(QStringLiteral("%1: %2 Correct it in %3, or give the file with %4 FILE,ADDRESS.")
                                 .arg(m_loader.controls.slotTitle(static_cast<std::size_t>(slot)), fault,
                                      printableText(m_loader.state.IniPath), slotOption(slot)));
        m_loader.controls.chkExeURK[static_cast<std::size_t>(slot)].Value = 0;
    }
}

void Plan::checkSizes() const {
    for (std::size_t i = 0; i < kSlots.size(); ++i) {
        const std::int64_t size = m_loader.controls.sizeInBytes(i).value_or(0);
        if (size > std::numeric_limits<std::int32_t>::max())
            throw UsageError(
                QStringLiteral("%1 (%2): %3 bytes are more than an image can have. Choose another file.")
                    .arg(printableText(m_loader.controls.txtFilNam[i].Tag), slotOption(static_cast<int>(i)),
                         QString::number(size)));
    }
    for (const Slot slot : slotsToSend())
        checkIram(slot);
}

/// The boot ROM answers nothing to an image that does not fit.
void Plan::checkIram(int slot) const {
    constexpr std::int64_t kIramSize = 0x10000;
    const auto i = static_cast<std::size_t>(slot);
    const QString address = m_loader.controls.txtStartAddress[i].Text;
    const std::int64_t size = m_loader.controls.sizeInBytes(i).value_or(0);
    if (kSlots[i].memory != Memory::Iram || HexToLong(address) + size <= kIramSize)
        return;
    throw UsageError(
        QStringLiteral("%1 (%2): %3 bytes from IRAM address %4 on end past the last one, 0xFFFF. "
                       "Choose a smaller image or a lower address.")
            .arg(printableText(m_loader.controls.txtFilNam[i].Tag), slotOption(slot), QString::number(size),
                 address));
}

void Plan::requireFile(int slot) const {
    if (isSelected(slot))
        return;
    const QString iniPath = printableText(m_loader.state.IniPath);
    if (isNamed(slot))
        throw UsageError(
            QStringLiteral("%1, which %2 names: %3. Give the file with %4 or correct the INI file.")
                .arg(printableText(m_loader.iniLoader.missingFileOf(slot)), iniPath,
                     fileProblem(m_loader.iniLoader.missingFileOf(slot)), slotOption(slot)));
    QString presets = iniPath + QStringLiteral(" names none");
    if (!FileExists(m_loader.state.IniPath, true)) {
        presets = QStringLiteral("there is no INI file ") + iniPath;
        if (!m_ini.alsoSought.isEmpty())
            presets += QStringLiteral(", nor ") + printableText(m_ini.alsoSought);
    }
    throw UsageError(QStringLiteral("No image given: name one with %1 FILE[,ADDRESS]; %2.")
                         .arg(slotOption(slot), presets));
}

QStringList Plan::announcement() const {
    if (!usesPort())
        return {};
    const int number = m_loader.controls.cmbComPort.selectedItemData();
    const QString device = m_loader.port.deviceName(number);
    QStringList lines{
        QStringLiteral("Port: ") +
        port_messages::portName(number, device.isEmpty() ? QStringLiteral("no device") : device)};
    for (const StepCall& step : m_steps) {
        for (const Slot slot : step.facts->images) {
            if (isSelected(slot))
                lines += imageLine(slot);
        }
    }
    return lines;
}

std::vector<Slot> Plan::slotsToSend() const {
    std::vector<Slot> sent;
    for (const Slot slot : kWindowOrder) {
        const bool isSent = std::any_of(m_steps.cbegin(), m_steps.cend(),
                                        [slot](const StepCall& step) { return sends(*step.facts, slot); });
        if (isSent && isSelected(slot))
            sent.push_back(slot);
    }
    return sent;
}

QStringList Plan::warnings() const {
    QStringList lines;
    const QStringList remarks = m_loader.iniLoader.remarks();
    for (const QString& remark : remarks)
        lines += printableText(m_loader.state.IniPath) + QStringLiteral(": ") + remark;
    for (int slot = 0; slot < kSlotCount; ++slot) {
        if (isNamed(slot) && !isSelected(slot) && !uses(slot) &&
            m_loader.iniLoader.addressFaultOf(slot).isEmpty())
            lines += QStringLiteral("%1, which %2 names: %3; no step needs it.")
                         .arg(printableText(m_loader.iniLoader.missingFileOf(slot)),
                              printableText(m_loader.state.IniPath),
                              fileProblem(m_loader.iniLoader.missingFileOf(slot)));
    }
    return lines;
}

bool Plan::usesPort() const {
    return std::any_of(m_steps.cbegin(), m_steps.cend(),
                       [](const StepCall& step) { return step.facts->usesPort; });
}

bool Plan::checksAddresses() const {
    return std::any_of(m_steps.cbegin(), m_steps.cend(),
                       [](const StepCall& step) { return step.facts->checksAddresses; });
}

QString Plan::stepsText() const {
    QStringList texts;
    for (const StepCall& step : m_steps)
        texts += QString::fromLatin1(step.facts->name) +
                 (step.argument.isEmpty() ? QString()
                                          : QStringLiteral(" \"%1\"").arg(printableText(step.argument)));
    return texts.join(QStringLiteral(", "));
}

bool Plan::has(const char* step) const {
    return hasStep(m_steps.cbegin(), m_steps.cend(), step);
}

bool Plan::hasBefore(const char* step) const {
    return hasStep(m_steps.cbegin(), m_checked, step);
}

bool Plan::isSelected(int slot) const {
    return m_loader.controls.chkExeURK[static_cast<std::size_t>(slot)].isTicked();
}

bool Plan::isNamed(int slot) const {
    return !m_loader.controls.txtFilNam[static_cast<std::size_t>(slot)].Text.value().isEmpty();
}

bool Plan::uses(int slot) const {
    return std::any_of(m_steps.cbegin(), m_steps.cend(),
                       [slot](const StepCall& step) { return concerns(*step.facts, slot); });
}

QString Plan::imageLine(int slot) const {
    const auto i = static_cast<std::size_t>(slot);
    const std::int64_t bytes = m_loader.controls.sizeInBytes(i).value_or(0);
    const bool erases = slot == kFlashImage && m_loader.controls.chkErase.isTicked();
    return QStringLiteral("%1: %2 bytes (%3), %4 on the line at 115200 baud, %5 to %6 address %7%8")
        .arg(m_loader.controls.slotTitle(i).section(QStringLiteral(" ("), 0, 0))
        .arg(bytes)
        .arg(m_loader.controls.lblCodeSize[i].Caption.value(), lineTimeText(bytes),
             printableFile(m_loader.controls.txtFilNam[i].Tag), memoryName(kSlots[i].memory),
             m_loader.controls.txtStartAddress[i].Text.value(),
             erases ? QStringLiteral(", after an erase of the whole flash") : QString());
}

} // namespace zrk
