#pragma once

#include "controls/Controls.h"
#include "platform/ProgramFacts.h"
#include "serial/SharedState.h"

namespace zrk {

class IniLoader;
class MessageBoxes;
class Paths;
class Transport;

/// What the program prepares before its window is first shown.
class StartUp {
  public:
    StartUp(SharedState& state, Controls& controls, Transport& transport, IniLoader& iniLoader,
            MessageBoxes& boxes);

    /// Brings state and controls into their starting condition without a look at any file: port list,
    /// slot names, header, buttons.
    void prepare(const ProgramFacts& facts);

    /// prepare(), then presets the slots from the INI file: `iniPath`, or when that is empty the one beside
    /// the program. A message box tells when there is none. Run once.
    void Form_Load(const ProgramFacts& facts, const Paths& paths, const QString& iniPath = {});

  private:
    void fillPortList();
    void fillSlotNames();

    SharedState& m_state;
    Controls& m_controls;
    Transport& m_transport;
    IniLoader& m_iniLoader;
    MessageBoxes& m_boxes;
};

} // namespace zrk
