#pragma once

#include "serial/Link.h"

namespace zrk {

class WaitDialogView;

/// The exchange with the chip's boot ROM, up to the point where it takes an image header.
///
/// | from     | byte      | meaning                          |
/// |----------|-----------|----------------------------------|
/// | boot ROM | 0x35      | BootID, repeated until answered  |
/// | host     | 0x41      | answer                           |
/// | boot ROM | 0x35      | second BootID                    |
/// | host     | 0x55 0x33 | unlock pair                      |
/// | boot ROM | 0x52      | ready for the header             |
class BootRomHandshake {
  public:
    BootRomHandshake(Link& link, WaitDialogView& view);

    /// Waits for the BootID under the wait dialog, then does the exchange under one reply interval. Returns
    /// true if the boot ROM is ready. On false the console says why, and the caller runs its abort sequence.
    /// Yields; port failures pass through as RuntimeFailure.
    [[nodiscard]] bool run();

  private:
    [[nodiscard]] bool waitForBootId();

    Link& m_link;
    WaitDialogView& m_view;
};

} // namespace zrk
