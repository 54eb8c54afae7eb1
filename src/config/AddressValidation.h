#pragma once

#include "controls/Desk.h"

namespace zrk {

/// A check of the SDRAM ranges of the selected slots 1 to 4, which it lists in lvwAdrs.
class AddressValidation {
  public:
    AddressValidation(Desk& desk);

    /// Returns true if every selected range lies in the SDRAM and overlaps no other and no marker. Shows a
    /// message box for each problem, all of them in one run; MessageText keeps the last. Throws
    /// RuntimeFailure if an address text is not a number, which the entry rule rules out. Yields.
    [[nodiscard]] bool ValidateAddresses();

    /// Checks on demand, and shows a failure as a message box. Yields.
    void cmdValidateAdrs_Click();

  private:
    void checkBounds(int slot);
    void listRanges();
    void checkOverlaps();
    void report(const QString& text, const QString& title);

    Desk& m_desk;
};

} // namespace zrk
