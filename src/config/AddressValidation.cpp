#include "config/AddressValidation.h"

#include "config/HexConversions.h"
#include "platform/RuntimeFailure.h"

namespace zrk {
namespace {

// The bounds without their last hexadecimal digit, because whole SDRAM addresses exceed a signed long.
constexpr std::int32_t kLowestWithoutLastDigit = 0x8000000;
constexpr std::int32_t kHighestWithoutLastDigit = 0x83FFFFF;

/// Returns the address as an offset into the SDRAM: its top digit becomes 0.
QString offsetText(const QString& address) {
    return QStringLiteral("0x0") + strictHexForm(NormalizeHex(address)).right(7);
}

/// Avoids HexToLong(), which cannot read 2 GiB and more. A marker's text is empty: 0.
std::int64_t bytesOf(const QString& size) {
    return size.toLongLong(nullptr, 16);
}

} // namespace

AddressValidation::AddressValidation(Desk& desk) : m_desk(desk) {}

bool AddressValidation::ValidateAddresses() {
    m_desk.state.MessageText.clear();
    m_desk.controls.lvwAdrs.clear();
    listRanges();
    if (!m_desk.state.MessageText.isEmpty())
        return false;
    checkOverlaps();
    return m_desk.state.MessageText.isEmpty();
}

void AddressValidation::cmdValidateAdrs_Click() {
    try {
        if (ValidateAddresses())
            m_desk.state.Remark = {
                QStringLiteral("The addresses are valid: no range overlaps another or a marker."),
                RemarkSeverity::Done};
    } catch (const RuntimeFailure& failure) {
        report(failure.description(), QStringLiteral("Invalid address"));
    }
}

void AddressValidation::checkBounds(int slot) {
    const auto i = static_cast<std::size_t>(slot);
    const std::int32_t bound = HexToLong(DropLastChar(m_desk.controls.txtStartAddress[i].Text));
    if (bound <= kHighestWithoutLastDigit && bound >= kLowestWithoutLastDigit)
        return;
    report(QStringLiteral("Check the Start address for the ") + m_desk.state.SlotNames[i] +
               QStringLiteral("\r\nIt must be between 0x80000004 and 0x83FFFFF0"),
           QStringLiteral("Invalid address"));
}

void AddressValidation::listRanges() {
    for (int slot = 0; slot < kSlotCount; ++slot) {
        const auto i = static_cast<std::size_t>(slot);
        if (kSlots[i].memory != Memory::Sdram || !m_desk.controls.chkExeURK[i].isTicked())
            continue;
        checkBounds(slot);
        m_desk.controls.lvwAdrs.add({QString::number(slot),
                                     offsetText(m_desk.controls.txtStartAddress[i].Text),
                                     m_desk.controls.lblCodeSize[i].Caption});
    }
    m_desk.controls.lvwAdrs.add({QStringLiteral("5"), QStringLiteral("0x00000000"), QStringLiteral("0x4")});
    m_desk.controls.lvwAdrs.add({QStringLiteral("6"), QStringLiteral("0x02000000"), QString()});
    m_desk.controls.lvwAdrs.add({QStringLiteral("7"), QStringLiteral("0x04000000"), QString()});
}

void AddressValidation::checkOverlaps() {
    // A message box keeps the event loop running, so this takes a copy of the rows.
    const QList<AddressList::Row> rows = m_desk.controls.lvwAdrs.rows();
    for (qsizetype p = 0; p + 1 < rows.size(); ++p) {
        const std::int64_t end = HexToLong(rows[p].start) + bytesOf(rows[p].size);
        if (end <= HexToLong(rows[p + 1].start))
            continue;
        for (const AddressList::Row& row : {rows[p], rows[p + 1]})
            m_desk.controls.lvwAdrs.mark(row.index);
        const auto name = [this](const AddressList::Row& row) {
            return m_desk.state.SlotNames.at(static_cast<std::size_t>(row.index.toInt()));
        };
        report(QStringLiteral("Address range for the ") + name(rows[p]) +
                   QStringLiteral("\r\noverlaps the address range for ") + name(rows[p + 1]),
               QStringLiteral("Address overlap or too large"));
    }
}

void AddressValidation::report(const QString& text, const QString& title) {
    m_desk.tell(text, MessageIcon::Exclamation, title);
}

} // namespace zrk
