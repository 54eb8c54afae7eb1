#pragma once

#include "platform/ProgramFacts.h"
#include "serial/Link.h"

namespace zrk {

class IniLoader;

/// The preparation of a loader before its window is first shown.
class StartUp {
  public:
    StartUp(Link& link, IniLoader& iniLoader);

    /// Brings state and controls into their starting condition without reading any file: port list, slot
    /// names, header, buttons.
    void prepare(const ProgramFacts& facts);

    /// Calls prepare(), then presets the slots from the INI file at `iniPath`. Shows a message box if it
    /// is missing. Run once. Yields.
    void Form_Load(const ProgramFacts& facts, const QString& iniPath);

  private:
    void fillPortList();
    void fillSlotNames();

    Link& m_link;
    IniLoader& m_iniLoader;
};

} // namespace zrk
