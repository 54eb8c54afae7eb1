#pragma once

#include "serial/Link.h"

#include <QByteArray>

namespace zrk {

class ImageSlots;

/// Sends the image of one slot: header, the primary boot's acceptance where it answers, code bytes.
///
/// | offset | width | header field  | encoding                                |
/// |--------|-------|---------------|-----------------------------------------|
/// | 0      | 4     | start address | unsigned 32-bit, least significant first |
/// | 4      | 4     | size in bytes | unsigned 32-bit, least significant first |
class ImageTransfer {
  public:
    ImageTransfer(Link& link, ImageSlots& imageSlots);

    /// Slots 0 and 6 go to the boot ROM, 1 to 4 to the primary boot, which accepts first; slot 5 sends its
    /// code bytes alone, as the payload of a frame. False when the primary boot refuses or answers
    /// wrongly. A cancel that the user confirms ends the code early with True and CancelRequested still
    /// set. Yields after every code byte; file, number and port failures pass through as RuntimeFailure.
    [[nodiscard]] bool SendImage(int slot);

  private:
    void sendHeader(int slot);
    void sendNumber(const QString& text);
    [[nodiscard]] bool awaitAcceptance();
    void sendCode(int slot);
    [[nodiscard]] bool passAfterByte();
    [[nodiscard]] bool userConfirmsCancel();

    Link& m_link;
    ImageSlots& m_imageSlots;
};

} // namespace zrk
