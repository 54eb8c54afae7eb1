#pragma once

#include "flash/FlashFrames.h"
#include "serial/Link.h"

#include <chrono>
#include <optional>

namespace zrk {

class BootRomHandshake;
class ImageTransfer;

/// The programming of slot 5's image into the board's NAND flash, with the flash-programming image of slot 6.
class FlashProgramming {
  public:
    FlashProgramming(Link& link, BootRomHandshake& handshake, ImageTransfer& transfer);

    /// Runs the whole programming inside the call, yielding; throws nothing. There is no time limit while the
    /// chip erases or programs, unless one is set; a cancel ends every wait.
    void cmdPrgFlash_Click();

    /// Ends a run with LimitReached, from now on, if an answer takes so long.
    void limitAnswers(std::optional<std::chrono::milliseconds> limit) { m_answerLimit = limit; }

  private:
    [[nodiscard]] Operation::End program();
    [[nodiscard]] StatusRemark caution() const;
    [[nodiscard]] bool wake();
    [[nodiscard]] bool requestVersion();
    [[nodiscard]] bool sendHeader();
    [[nodiscard]] bool sendData();
    [[nodiscard]] bool sendEndOfData();
    [[nodiscard]] bool sendComplete();
    [[nodiscard]] bool awaitAck(Awaited kind, const QString& what);
    void abort();

    Link& m_link;
    BootRomHandshake& m_handshake;
    ImageTransfer& m_transfer;
    FlashFrames m_frames;
    std::optional<std::chrono::milliseconds> m_answerLimit;
    bool m_headerSent = false;
};

} // namespace zrk
