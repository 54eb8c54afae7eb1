#pragma once

#include "controls/Desk.h"

namespace zrk {

/// Returns why the address text is not an address of the slot's memory, as the end of a sentence, or "" if it
/// is. The entry rule makes 0 of an unreadable text, and keeps the last four digits of one that does not fit
/// into the IRAM's 16 bits; without a user to look at the result, call this first.
[[nodiscard]] QString addressFault(int slot, const QString& text);

/// The entry rule of the address boxes. It brings every text into the one form that the address checks rely
/// on: "0x" and 4 (IRAM) or 8 upper-case digits, or "0x0" for a text that is not a 32-bit number.
class AddressEntry {
  public:
    explicit AddressEntry(Desk& desk) : m_controls(desk.controls), m_state(desk.state) {}

    /// Applies the rule, after the focus has left the box or a program step has set an address. A text whose
    /// meaning it changes leaves a remark and marks the slot until its address changes again.
    void txtStartAddress_Validate(int slot);

    /// Applies the rule on Enter (13). Returns the character that the box is to take, 0 for none.
    [[nodiscard]] int txtStartAddress_KeyPress(int slot, int character);

  private:
    void remark(int slot, const QString& typed);

    Controls& m_controls;
    SharedState& m_state;
    std::array<QString, kSlotCount> m_taken; ///< what each box held after its last change
};

} // namespace zrk
