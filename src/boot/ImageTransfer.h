#pragma once

#include "serial/Link.h"

#include <QByteArray>

#include <memory>

namespace zrk {

class ImageSlots;
class ImageStore;

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
    /// set. A file of another length than the slot's size is sent as far as both go, which SharedState's
    /// OtherLength notes. Yields after every code byte; file, number and port failures pass through as
    /// RuntimeFailure.
    [[nodiscard]] bool SendImage(int slot);

    /// Asks, while code bytes are being sent, whether that may end. True at once when none are; False while
    /// another question is open. Yields.
    [[nodiscard]] bool mayBeEnded();

    /// From now on files are read through this store, which boards on other threads use as well.
    void readThrough(std::shared_ptr<ImageStore> store) { m_store = std::move(store); }

  private:
    void sendHeader(int slot);
    void sendNumber(const QString& text);
    [[nodiscard]] bool awaitAcceptance();
    void sendCode(int slot);
    void noteOtherLength(int slot, qsizetype length);
    [[nodiscard]] bool passAfterByte();
    [[nodiscard]] bool userConfirmsCancel();

    Link& m_link;
    ImageSlots& m_imageSlots;
    std::shared_ptr<ImageStore> m_store; ///< null: each file is read when it is sent
};

} // namespace zrk
