#pragma once

#include "cli/ExitStatus.h"
#include "cli/MessageLines.h"
#include "cli/Options.h"
#include "cli/Output.h"
#include "cli/PowerOnNotice.h"
#include "cli/ProgressLines.h"
#include "loader/Loader.h"
#include "loader/ThisProgram.h"
#include "machine/InterruptSignal.h"
#include "machine/MachinePorts.h"
#include "machine/YesNoQuestion.h"
#include "platform/ProgramFacts.h"

namespace zrk {

/// One run of the command line: a loader without a window, and the steps that it is put through, on one
/// thread.
class Session {
  public:
    Session(const CliOptions& options, const ProgramFacts& facts, EventLoop& loop, Output& output);

    /// Presets the slots, checks what can be checked before anything is sent, and carries out the steps
    /// up to the first that fails. Throws UsageError for a configuration that cannot work.
    [[nodiscard]] ExitStatus run();

  private:
    void presetSlots();
    void presetSlot(int slot, const QString& value);
    void interrupted(bool ended);

    CliOptions m_options;
    ProgramFacts m_facts;
    IniChoice m_ini;
    Output& m_output;
    YesNoQuestion m_question;
    MessageLines m_messages;
    NoFileDialog m_fileDialog;
    PowerOnNotice m_powerOnNotice;
    InterruptSignal m_interrupt; // before the port, whose thread must not take the signals
    MachinePorts m_ports;
    Loader m_loader;
    ProgressLines m_progress;
};

} // namespace zrk
