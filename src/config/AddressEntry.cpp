#include "config/AddressEntry.h"

#include "config/HexConversions.h"
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

} // namespace

void AddressEntry::txtStartAddress_Validate(int slot) {
    const qsizetype digits = addressDigits(factsOf(slot).memory);
    auto& text = m_controls.txtStartAddress[static_cast<std::size_t>(slot)].Text;
    text = enteredForm(text, digits);
}

int AddressEntry::txtStartAddress_KeyPress(int slot, int character) {
    if (character != kEnter)
        return character;
    txtStartAddress_Validate(slot);
    return 0;
}

} // namespace zrk
