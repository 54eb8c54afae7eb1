#include "config/AddressEntry.h"

#include "config/HexConversions.h"
#include "files/PrintableText.h"
#include "platform/RuntimeFailure.h"

namespace zrk {
namespace {

constexpr int kEnter = 13;

QString enteredForm(const QString& text, qsizetype digits) {
    try {
        return QStringLiteral("0x") +
               strictHexForm(NormalizeHex(text)).rightJustified(digits, QLatin1Char('0')).right(digits);
    } catch (const RuntimeFailure&) {
        return QStringLiteral("0x0");
    }
}

qsizetype digitsOf(int slot) {
    return addressDigits(factsOf(slot).memory);
}

/// Returns a remark if the address differs from what the text suggests, else "".
QString remarkOn(int slot, const QString& typed, const QString& address) {
    if (const QString fault = addressFault(slot, typed); !fault.isEmpty())
        return QStringLiteral("%1 %2 is used instead. Write 0x and up to %3 hexadecimal digits.")
            .arg(fault, address, QString::number(digitsOf(slot)));
    const bool isHex = NormalizeHex(typed).startsWith(QLatin1String("&h"), Qt::CaseInsensitive);
    constexpr int kSameInBoth = 9; // up to here decimal and hexadecimal digits mean the same
    if (isHex || strictHexForm(typed).toLongLong(nullptr, 16) <= kSameInBoth)
        return {};
    return QStringLiteral("%1 is taken for a decimal number, which is %2. Write 0x in front of hexadecimal "
                          "digits.")
        .arg(printableText(typed), address);
}

} // namespace

QString addressFault(int slot, const QString& text) {
    try {
        if (strictHexForm(NormalizeHex(text)).size() > digitsOf(slot))
            return QStringLiteral("%1 does not fit into the IRAM, whose addresses go from 0x0000 to 0xFFFF.")
                .arg(printableText(text));
    } catch (const RuntimeFailure& failure) {
        return QStringLiteral("the address cannot be read. ") + printableText(failure.description());
    }
    return {};
}

void AddressEntry::txtStartAddress_Validate(int slot) {
    auto& text = m_controls.txtStartAddress[static_cast<std::size_t>(slot)].Text;
    const QString typed = text;
    text = enteredForm(typed, digitsOf(slot));
    QString& taken = m_taken[static_cast<std::size_t>(slot)];
    if (typed == taken) // the focus only passed through
        return;
    taken = text;
    remark(slot, typed);
}

void AddressEntry::remark(int slot, const QString& typed) {
    const auto i = static_cast<std::size_t>(slot);
    const QString remark = remarkOn(slot, typed, m_controls.txtStartAddress[i].Text);
    m_controls.AddressRemark[i] = remark;
    if (!remark.isEmpty())
        m_state.Remark = {QStringLiteral("%1: %2").arg(m_controls.slotTitle(i), remark),
                          RemarkSeverity::Warning};
}

int AddressEntry::txtStartAddress_KeyPress(int slot, int character) {
    if (character != kEnter)
        return character;
    txtStartAddress_Validate(slot);
    return 0;
}

} // namespace zrk
