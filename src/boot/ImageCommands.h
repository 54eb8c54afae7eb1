#pragma once

#include "controls/Controls.h"
#include "serial/Operation.h"

namespace zrk {

class AddressValidation;
class ImageTransfer;
class TerminalMode;

/// Downloads through the running primary boot, one letter each.
///
/// | from         | bytes                                       |
/// |--------------|---------------------------------------------|
/// | host         | command: "p", "u", "r" or "k"               |
/// | host         | start address and size, 4 bytes each        |
/// | primary boot | "o" accepts, "E" refuses                    |
/// | host         | code bytes                                  |
/// | primary boot | "t": all received                           |
class ImageCommands {
  public:
    ImageCommands(SharedState& state, Controls& controls, StatusConsole& console, Transport& transport,
                  ComPort& port, TerminalMode& terminal, AddressValidation& validation,
                  ImageTransfer& transfer, Operation& operation);

    /// Downloads the image of slot 1 to 4; True when the primary boot confirmed it with "t". A slot
    /// outside 0 to 4 is a RuntimeFailure (Index). Yields.
    [[nodiscard]] bool SendImageCommand(int slot);

    /// Downloads the selected U-Boot, root file system and kernel images, in that order, over the open
    /// port. Runs to its end inside the call, yielding; throws nothing.
    void cmdURK_Click();

  private:
    [[nodiscard]] Operation::End download();
    void abortDownload();
    void enableButtons(bool enabled);

    SharedState& m_state;
    Controls& m_controls;
    StatusConsole& m_console;
    Transport& m_transport;
    ComPort& m_port;
    TerminalMode& m_terminal;
    AddressValidation& m_validation;
    ImageTransfer& m_transfer;
    Operation& m_operation;
};

} // namespace zrk
