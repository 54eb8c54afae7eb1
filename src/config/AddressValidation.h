#pragma once

#include "controls/Desk.h"

namespace zrk {

/// Checks the SDRAM ranges of the selected slots 1 to 4 and lists them in lvwAdrs.
class AddressValidation {
  public:
    AddressValidation(Desk& desk);

    /// True when every selected range lies in the SDRAM and overlaps no other and no marker.
    /// Shows a message box for each problem, all of them in one run; MessageText keeps the last.
    /// Throws RuntimeFailure when an address text is no number, which the entry rule rules out.
    [[nodiscard]] bool ValidateAddresses();

    /// The check on demand; a failure is shown as a message box.
    void cmdValidateAdrs_Click();

  private:
    void checkBounds(int slot);
    void listRanges();
    void checkOverlaps();
    void report(const QString& text, const QString& title);

    Desk& m_desk;
};

} // namespace zrk
