#pragma once

#include "controls/Desk.h"

namespace zrk {

class AddressEntry;
class ImageSlots;

/// Presets the image slots from the configuration file.
class IniLoader {
  public:
    IniLoader(Desk& desk, ImageSlots& slots, AddressEntry& addresses);

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

    Desk& m_desk;
    ImageSlots& m_slots;
    AddressEntry& m_addresses;
};

} // namespace zrk
