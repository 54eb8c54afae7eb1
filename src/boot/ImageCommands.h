#pragma once

#include "serial/Link.h"

namespace zrk {

class AddressValidation;
class ImageTransfer;

/// The downloads through the running primary boot, one letter each.
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
    ImageCommands(Link& link, AddressValidation& validation, ImageTransfer& transfer);

    /// Downloads the image of slot 1 to 4. Returns true if the primary boot confirmed it with "t". A slot
    /// outside 0 to 4 is a RuntimeFailure (Index). Yields.
    [[nodiscard]] bool SendImageCommand(int slot);

    /// Downloads the selected U-Boot, root file system and kernel images, in that order, over the open
    /// port. Runs to its end inside the call, yielding; throws nothing.
    void cmdURK_Click();

  private:
    [[nodiscard]] Operation::End download();
    void notePlaceOf(int slot);
    void abortDownload();
    void enableButtons(bool enabled);

    Link& m_link;
    AddressValidation& m_validation;
    ImageTransfer& m_transfer;
    int m_number = 0; ///< of the image in the running download, from 1
};

} // namespace zrk
