#pragma once

#include "serial/Link.h"

namespace zrk {

class AddressValidation;
class BootRomHandshake;
class ImageCommands;
class ImageTransfer;

/// The bring-up, from a freshly powered board to a running secondary executable.
class BringUp {
  public:
    BringUp(Link& link, AddressValidation& validation, BootRomHandshake& handshake, ImageTransfer& transfer,
            ImageCommands& commands);

    /// Loads the selected primary boot through the boot ROM and the selected secondary executable through
    /// the primary boot. Runs to its end inside the call, yielding; throws nothing.
    void cmdStartPrimary_Click();

    /// Does the same before a command to the primary boot. Without a secondary executable it takes the
    /// primary boot's "X", within one reply interval, and leaves terminal mode off. Yields.
    void loadForCommand();

    /// Starts the loaded secondary executable and switches to terminal mode. Yields. A port failure is shown,
    /// closes the port, and leaves only the bring-up enabled. Does nothing while an operation runs.
    void cmdStartSecondary_Click();

    /// Does the same without a terminal: opens the port if it is closed, and leaves the board's output to the
    /// next reader of the port. Yields.
    void startWithoutTerminal();

  private:
    enum class Then { Terminal, Command };

    void load(Then then);
    void start(const std::function<Operation::End()>& body);
    void sendStartCommand();
    [[nodiscard]] Operation::End loadTicked(Then then);
    [[nodiscard]] bool loadPrimary();
    [[nodiscard]] bool loadSecondary();
    [[nodiscard]] bool takeReadiness();

    Link& m_link;
    AddressValidation& m_validation;
    BootRomHandshake& m_handshake;
    ImageTransfer& m_transfer;
    ImageCommands& m_commands;
};

} // namespace zrk
