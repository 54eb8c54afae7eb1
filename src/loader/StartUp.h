#pragma once

#include "platform/ProgramFacts.h"
#include "serial/Link.h"

namespace zrk {

class IniLoader;

/// What the program prepares before its window is first shown.
class StartUp {
  public:
    StartUp(Link& link, IniLoader& iniLoader);

    /// Brings state and controls into their starting condition without a look at any file: port list,
    /// slot names, header, buttons.
    void prepare(const ProgramFacts& facts);

    /// prepare(), then presets the slots from the INI file at `iniPath`. A message box tells when there is
    /// none. Run once.
    void Form_Load(const ProgramFacts& facts, const QString& iniPath);

  private:
    void fillPortList();
    void fillSlotNames();

    Link& m_link;
    IniLoader& m_iniLoader;
};

} // namespace zrk
