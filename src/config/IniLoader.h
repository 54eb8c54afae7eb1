#pragma once

#include "controls/Desk.h"

#include <QStringList>

#include <array>

namespace zrk {

class AddressEntry;
class ImageSlots;
class IniFile;

/// The reader of the configuration file, which presets the image slots.
class IniLoader {
  public:
    IniLoader(Desk& desk, ImageSlots& slots, AddressEntry& addresses);

    /// Reads IniPath and fills the slots it names; each slot shows the result. Slots that the file does not
    /// name keep their contents.
    void mnuLoadIni_Click();

    /// Does the same for another file, which mnuLoadIni_Click reads from now on. Relative names start at its
    /// folder.
    void openIni(const QString& path);

    /// Makes mnuLoadIni_Click read this file from now on. Relative names start at its folder.
    void usePath(const QString& path);

    /// Shows a message box: the file has to be edited by hand. Yields.
    void mnuWriteIni_Click();

    /// Returns what had no effect, or an unexpected one, when the file was read last: unknown names, and
    /// addresses that cannot be used. Full sentences, each naming the place. After ten names comes the number
    /// of the others.
    [[nodiscard]] QStringList remarks() const;

    /// Returns why the address that the slot was last filled with cannot be used, or "".
    [[nodiscard]] const QString& addressFaultOf(int slot) const {
        return m_addressFaults.at(static_cast<std::size_t>(slot));
    }

    /// Returns the missing, empty or unreadable file that the slot was last to be filled with, or "".
    [[nodiscard]] const QString& missingFileOf(int slot) const {
        return m_missingFiles.at(static_cast<std::size_t>(slot));
    }

    /// Fills one slot from a value "file[,address]"; "" leaves it untouched.
    void applyValue(int slot, const QString& value);

    /// Fills one slot with the file at a full path and the address text; clears it if there is no such file.
    void applyFile(int slot, const QString& path, const QString& address);

    /// Clears the slot, as if the INI file did not name a file for it.
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
    std::array<QString, kSlotCount> m_missingFiles;
};

} // namespace zrk
