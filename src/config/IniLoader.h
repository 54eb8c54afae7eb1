#pragma once

#include "controls/Desk.h"

#include <QStringList>

#include <array>

namespace zrk {

class AddressEntry;
class ImageSlots;
class IniFile;

/// Presets the image slots from the configuration file.
class IniLoader {
  public:
    IniLoader(Desk& desk, ImageSlots& slots, AddressEntry& addresses);

    /// Reads IniPath and fills the slots it names; the outcome is visible in each slot. Slots that the
    /// file does not name keep what they hold.
    void mnuLoadIni_Click();

    /// The same for another file, which mnuLoadIni_Click reads from now on and at whose folder relative names
    /// start.
    void openIni(const QString& path);

    /// The file is edited by hand: only says so.
    void mnuWriteIni_Click();

    /// What in the file had no effect or another one than it seems to have, since it was read last: names
    /// that nobody knows, and addresses that cannot be used. Full sentences, each naming the place. After ten
    /// names the number of the others.
    [[nodiscard]] QStringList remarks() const;

    /// Why the address that the slot was last filled with cannot be used, or "".
    [[nodiscard]] const QString& addressFaultOf(int slot) const {
        return m_addressFaults.at(static_cast<std::size_t>(slot));
    }

    /// Fills one slot from a value "file[,address]"; "" leaves it untouched.
    void applyValue(int slot, const QString& value);

    /// Fills one slot with the file at a full path and the address text; clears it when there is no such
    /// file.
    void applyFile(int slot, const QString& path, const QString& address);

    /// Takes the slot's file away, as if the INI file did not name one.
    void emptySlot(int slot);

  private:
    [[nodiscard]] QStringList keptSlots() const;
    void checkNames(const IniFile& file);
    void clearSlot(int slot, const QString& path);

    Desk& m_desk;
    ImageSlots& m_slots;
    AddressEntry& m_addresses;
    QStringList m_nameRemarks;
    int m_moreNameRemarks = 0;                ///< left out of m_nameRemarks
    std::array<bool, kSlotCount> m_isNamed{}; ///< which slots the file that was read last has a value for
    std::array<QString, kSlotCount> m_addressFaults;
};

} // namespace zrk
