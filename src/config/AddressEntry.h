#pragma once

#include "controls/Desk.h"

namespace zrk {

/// Why the address text does not stand for an address of the slot's memory, as the end of a sentence, or ""
/// when it does. The entry rule makes 0 of what cannot be read, and keeps the last four digits of what
/// does not fit into the IRAM's 16 bits; who has nobody to look at the result asks here first.
[[nodiscard]] QString addressFault(int slot, const QString& text);

/// The entry rule of the address boxes: it brings every text into the one form that the address checks
/// rely on, "0x" and 4 (IRAM) or 8 upper-case digits, or "0x0" for a text that is no 32-bit number.
class AddressEntry {
  public:
    explicit AddressEntry(Desk& desk) : m_controls(desk.controls) {}

    /// Runs when the focus leaves the box and when a program step has set an address.
    void txtStartAddress_Validate(int slot);

    /// Enter (13) runs the entry rule. Returns the character that the box is to take, 0 for none.
    [[nodiscard]] int txtStartAddress_KeyPress(int slot, int character);

  private:
    Controls& m_controls;
};

} // namespace zrk
