#include "cli/Plan.h"

#include "loader/Loader.h"
#include "loader/TransferRate.h"

#include <algorithm>

namespace zrk {
namespace {

QString nameOf(Memory memory) {
    switch (memory) {
    case Memory::Iram:
        return QStringLiteral("IRAM");
    case Memory::Sdram:
        return QStringLiteral("SDRAM");
    case Memory::Nand:
        break;
    }
    return QStringLiteral("NAND flash");
}

} // namespace

void Plan::checkAddresses() {
    for (int slot = 0; slot < kSlotCount; ++slot) {
        const QString& fault = m_loader.iniLoader.addressFaultOf(slot);
        if (fault.isEmpty() || !isSelected(slot))
            continue;
        if (uses(slot))
            throw UsageError(QStringLiteral("%1: %2 Mend it in %3, or give the file with %4 FILE,ADDRESS.")
                                 .arg(m_loader.controls.slotTitle(static_cast<std::size_t>(slot)), fault,
                                      m_loader.state.IniPath, slotOption(slot)));
        m_loader.controls.chkExeURK[static_cast<std::size_t>(slot)].Value = 0;
    }
}

QStringList Plan::announcement() const {
    if (std::all_of(m_steps.cbegin(), m_steps.cend(), [](Step step) { return step == Step::Check; }))
        return {};
    const int number = m_loader.controls.cmbComPort.selectedItemData();
    const QString device = m_loader.port.deviceName(number);
    QStringList lines{QStringLiteral("Port: COM%1 (%2)")
                          .arg(number)
                          .arg(device.isEmpty() ? QStringLiteral("no device") : device)};
    for (const Step step : m_steps) {
        for (const int slot : imagesOf(step))
            lines += imageLine(slot);
    }
    return lines;
}

bool Plan::isSelected(int slot) const {
    return m_loader.controls.chkExeURK[static_cast<std::size_t>(slot)].isTicked();
}

bool Plan::has(Step step) const {
    return std::find(m_steps.cbegin(), m_steps.cend(), step) != m_steps.cend();
}

/// The selected slots whose images the step sends, in the order of sending.
std::vector<int> Plan::imagesOf(Step step) const {
    std::vector<int> images;
    if (step == Step::Load)
        images = {kPrimaryBoot, kSecondaryExecutable};
    else if (step == Step::Flash)
        images = {kPgSibl, kFlashImage};
    std::erase_if(images, [this](int slot) { return !isSelected(slot); });
    return images;
}

bool Plan::uses(int slot) const {
    if (has(Step::Check) && factsOf(slot).memory == Memory::Sdram)
        return true;
    return std::any_of(m_steps.cbegin(), m_steps.cend(), [this, slot](Step step) {
        const std::vector<int> images = imagesOf(step);
        return std::find(images.cbegin(), images.cend(), slot) != images.cend();
    });
}

QString Plan::imageLine(int slot) const {
    const auto i = static_cast<std::size_t>(slot);
    const QString size = m_loader.controls.lblCodeSize[i].Caption;
    const std::int64_t bytes = m_loader.controls.sizeInBytes(i).value_or(0);
    const bool erases = slot == kFlashImage && m_loader.controls.chkErase.isTicked();
    return QStringLiteral("%1: %2 bytes (%3), %4 on the line at 115200 baud, %5 to %6 address %7%8")
        .arg(m_loader.controls.slotTitle(i).section(QStringLiteral(" ("), 0, 0))
        .arg(bytes)
        .arg(size, lineTimeText(bytes), m_loader.controls.txtFilNam[i].Tag.value(), nameOf(kSlots[i].memory),
             m_loader.controls.txtStartAddress[i].Text.value(),
             erases ? QStringLiteral(", after an erase of the whole flash") : QString());
}

} // namespace zrk
