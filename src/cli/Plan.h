#pragma once

#include "cli/Steps.h"
#include "loader/ThisProgram.h"

#include <QStringList>

namespace zrk {

struct Loader;

/// What the steps will do with the slots as they are filled now.
class Plan {
  public:
    /// All of it has to outlive the plan; `ini` is where the slots' presets were looked for.
    Plan(Loader& loader, const StepList& steps, const IniChoice& ini, bool holdsDtr)
        : m_loader(loader), m_steps(steps), m_ini(ini), m_holdsDtr(holdsDtr) {}

    /// Throws UsageError for whatever can be found wrong before anything is sent. A selected slot whose
    /// address the entry rule had to change and that no step uses is left out, so that it stops none.
    void check();

    /// What goes over the line: the port and its device, then for each image, in the order of sending, its
    /// file, bytes, line time and address. Empty when the steps need no port.
    [[nodiscard]] QStringList announcement() const;

    /// The slots whose images the steps will send, each once.
    [[nodiscard]] std::vector<Slot> slotsToSend() const;

    /// What is strange but stops no step: lines of the INI file that say nothing, and files named there that
    /// are not there.
    [[nodiscard]] QStringList warnings() const;

    [[nodiscard]] bool usesPort() const;
    [[nodiscard]] bool checksAddresses() const;
    /// The steps in their order, with their arguments.
    [[nodiscard]] QString stepsText() const;

    [[nodiscard]] bool has(const char* step) const;
    /// For a step's `require`: whether the other one stands in front of it.
    [[nodiscard]] bool hasBefore(const char* step) const;
    [[nodiscard]] bool isSelected(int slot) const;

    /// True when an option or the INI file names a file for the slot, be it there or not.
    [[nodiscard]] bool isNamed(int slot) const;

    [[nodiscard]] bool holdsDtr() const { return m_holdsDtr; }

    /// Throws UsageError, which says how to give one, when the slot has no file.
    void requireFile(int slot) const;

  private:
    void checkAddresses();
    void checkSizes() const;
    void checkIram(int slot) const;
    [[nodiscard]] bool uses(int slot) const;
    [[nodiscard]] QString imageLine(int slot) const;

    Loader& m_loader;
    const StepList& m_steps;
    StepList::const_iterator m_checked = m_steps.cbegin(); ///< the step whose `require` is asked
    const IniChoice& m_ini;
    bool m_holdsDtr; ///< while the port is open
};

} // namespace zrk
