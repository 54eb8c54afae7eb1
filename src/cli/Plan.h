#pragma once

#include "cli/Steps.h"
#include "loader/ThisProgram.h"

#include <QStringList>

namespace zrk {

struct Loader;

/// The plan of a run: what the steps will do with the present slots.
class Plan {
  public:
    /// All arguments must outlive the plan; `ini` is where the slots' presets were looked for.
    Plan(Loader& loader, const StepList& steps, const IniChoice& ini, bool holdsDtr)
        : m_loader(loader), m_steps(steps), m_ini(ini), m_holdsDtr(holdsDtr) {}

    /// Throws UsageError for all that shows to be wrong before anything is sent. Unticks a selected slot
    /// whose address the entry rule had to change and that no step uses, so that it stops none.
    void check();

    /// Returns what is to be sent: the port and its device, then for each image, in the order of sending, its
    /// file, bytes, line time and address. Empty if the steps need no port.
    [[nodiscard]] QStringList announcement() const;

    /// Returns the slots whose images the steps will send, each once.
    [[nodiscard]] std::vector<Slot> slotsToSend() const;

    /// Returns warnings that stop no step: lines of the INI file without effect, and missing files that it
    /// names.
    [[nodiscard]] QStringList warnings() const;

    [[nodiscard]] bool usesPort() const;
    [[nodiscard]] bool checksAddresses() const;
    /// Returns the steps in their order, with their arguments.
    [[nodiscard]] QString stepsText() const;

    [[nodiscard]] bool has(const char* step) const;
    /// Returns, for a step's `require`, whether the other one comes before it.
    [[nodiscard]] bool hasBefore(const char* step) const;
    [[nodiscard]] bool isSelected(int slot) const;

    /// Returns whether an option or the INI file names a file for the slot, existing or not.
    [[nodiscard]] bool isNamed(int slot) const;

    [[nodiscard]] bool holdsDtr() const { return m_holdsDtr; }

    /// Throws UsageError, which says how to give one, if the slot has no file.
    void requireFile(int slot) const;

  private:
    void checkAddresses();
    void checkSizes() const;
    void checkIram(int slot) const;
    [[nodiscard]] bool uses(int slot) const;
    [[nodiscard]] QString imageLine(int slot) const;

    Loader& m_loader;
    const StepList& m_steps;
    StepList::const_iterator m_checked = m_steps.cbegin(); ///< the step whose `require` runs
    const IniChoice& m_ini;
    bool m_holdsDtr; ///< while the port is open
};

} // namespace zrk
