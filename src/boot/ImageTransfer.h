#pragma once

#include "serial/Link.h"

#include <QByteArray>

#include <memory>

namespace zrk {

class ImageSlots;
class ImageStore;

/// A sender of one slot's image: header, the primary boot's acceptance if it answers, code bytes.
///
/// | offset | width | header field  | encoding                                |
/// |--------|-------|---------------|-----------------------------------------|
/// | 0      | 4     | start address | unsigned 32-bit, least significant first |
/// | 4      | 4     | size in bytes | unsigned 32-bit, least significant first |
class ImageTransfer {
  public:
    ImageTransfer(Link& link, ImageSlots& imageSlots);

    /// Sends slots 0 and 6 to the boot ROM, 1 to 4 to the primary boot, which accepts first; of slot 5 only
    /// the code bytes, as the payload of a frame. Returns false if the primary boot refuses or answers
    /// wrongly. A cancel that the user confirms ends the code early with true, and CancelRequested is still
    /// set. A file of another length than the slot's size is sent as far as both go, which SharedState's
    /// OtherLength notes. Yields after every code byte; file, number and port failures pass through as
    /// RuntimeFailure.
    [[nodiscard]] bool SendImage(int slot);

    /// Asks, while code bytes are being sent, whether the operation may end. Returns true at once if none
    /// are, and false while another question is open. Yields.
    [[nodiscard]] bool mayBeEnded();

    /// Reads files through this store from now on, which boards on other threads use as well.
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
