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
    text = enteredForm(text, digitsOf(slot));
}

int AddressEntry::txtStartAddress_KeyPress(int slot, int character) {
    if (character != kEnter)
        return character;
    txtStartAddress_Validate(slot);
    return 0;
}

} // namespace zrk
