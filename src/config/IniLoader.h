#pragma once

#include "controls/Controls.h"
#include "serial/SharedState.h"

namespace zrk {

class AddressEntry;
class ImageSlots;
class MessageBoxes;
class Paths;

/// Presets the image slots from the configuration file.
class IniLoader {
  public:
    IniLoader(SharedState& state, Controls& controls, MessageBoxes& boxes, const Paths& paths,
              ImageSlots& slots, AddressEntry& addresses);

    /// Reads IniPath and fills the slots it names; the outcome is visible in each slot. Slots that the
    /// file does not name keep what they hold.
    void mnuLoadIni_Click();

    /// The file is edited by hand: only says so.
    void mnuWriteIni_Click();

    /// Fills one slot from a value "file[,address]"; "" leaves it untouched.
    void applyValue(int slot, const QString& value);

    /// Fills one slot with the file at a full path and the address text; clears it when there is no such
    /// file.
    void applyFile(int slot, const QString& path, const QString& address);

  private:
    void clearSlot(int slot, const QString& path);

    SharedState& m_state;
    Controls& m_controls;
    MessageBoxes& m_boxes;
    const Paths& m_paths;
    ImageSlots& m_slots;
    AddressEntry& m_addresses;
};

} // namespace zrk
