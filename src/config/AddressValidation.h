#pragma once

#include "controls/Controls.h"
#include "serial/SharedState.h"

namespace zrk {

class MessageBoxes;

/// Checks the SDRAM ranges of the selected slots 1 to 4 and lists them in lvwAdrs.
class AddressValidation {
  public:
    AddressValidation(SharedState& state, Controls& controls, MessageBoxes& boxes);

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
    void report(const QString& title);

    SharedState& m_state;
    Controls& m_controls;
    MessageBoxes& m_boxes;
};

} // namespace zrk
