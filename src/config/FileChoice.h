#pragma once

#include "controls/Desk.h"

#include <QString>

namespace zrk {

class ImageSlots;

/// The dialog that chooses a slot's image file.
class FileChoice {
  public:
    FileChoice(Desk& desk, ImageSlots& slots);

    /// Lets the user choose a file for the slot; a cancelled dialog changes nothing. Yields while the dialog
    /// is open. Changes nothing while an operation runs, even if it began during the dialog.
    void cmdBrowse_Click(int slot);

  private:
    Desk& m_desk;
    ImageSlots& m_slots;
};

} // namespace zrk
