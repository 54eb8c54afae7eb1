#pragma once

#include <QString>

namespace zrk {

class FileDialog;
class ImageSlots;
class Paths;
struct SharedState;

/// The choice of a slot's image file.
class FileChoice {
  public:
    FileChoice(SharedState& state, ImageSlots& slots, const Paths& paths, FileDialog& dialog);

    /// Lets the user pick a file for the slot; a cancelled dialog changes nothing. The event loop runs
    /// while the dialog is open. Does nothing while an operation runs.
    void cmdBrowse_Click(int slot);

  private:
    SharedState& m_state;
    ImageSlots& m_slots;
    const Paths& m_paths;
    FileDialog& m_dialog;
};

} // namespace zrk
