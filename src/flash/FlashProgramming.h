#pragma once

#include "controls/Controls.h"
#include "serial/Operation.h"

namespace zrk {

class BootRomHandshake;
class FlashFrames;
class ImageTransfer;
class TerminalMode;

/// Programs the image of slot 5 into the board's NAND flash with the flash-programming image of slot 6.
class FlashProgramming {
  public:
    FlashProgramming(SharedState& state, Controls& controls, StatusConsole& console, Transport& transport,
                     ComPort& port, TerminalMode& terminal, BootRomHandshake& handshake,
                     ImageTransfer& transfer, FlashFrames& frames, Operation& operation, MessageBoxes& boxes);

    /// The whole run. Runs to its end inside the call, yielding; throws nothing. There is no time limit
    /// while the chip erases or programs; a cancel ends every wait.
    void cmdPrgFlash_Click();

  private:
    [[nodiscard]] Operation::End program();
    [[nodiscard]] bool wake();
    [[nodiscard]] bool requestVersion();
    [[nodiscard]] bool sendHeader();
    [[nodiscard]] bool sendData();
    [[nodiscard]] bool sendEndOfData();
    [[nodiscard]] bool sendComplete();
    [[nodiscard]] bool awaitAck(const QString& what);
    void abort();

    SharedState& m_state;
    Controls& m_controls;
    StatusConsole& m_console;
    Transport& m_transport;
    ComPort& m_port;
    TerminalMode& m_terminal;
    BootRomHandshake& m_handshake;
    ImageTransfer& m_transfer;
    FlashFrames& m_frames;
    Operation& m_operation;
    MessageBoxes& m_boxes;
    bool m_headerStarted = false;
};

} // namespace zrk
