#pragma once

#include "board/Chip.h"
#include "board/ImageReceiver.h"

#include <map>
#include <optional>

namespace zrkboard {

// The images that the primary boot has loaded, by command letter.
using LoadedImages = std::map<char, ImageHeader>;

// The primary boot. It takes images into SDRAM on one-letter commands and starts the secondary program.
//
//     board        loader
//     X
//                  p, u, r or k; header
//     o (or E: not in SDRAM)
//                  code
//     t
//                  d           starts what "p" has loaded
class PrimaryBoot : public Partner {
  public:
    explicit PrimaryBoot(Chip& chip) : m_chip(chip) {}

    void start() override;
    void receive(std::uint8_t byte) override;
    [[nodiscard]] bool expectsCode() const override;
    [[nodiscard]] State state() const override;

  private:
    void receiveCommand(char letter);
    void receiveImage(std::uint8_t byte);
    void startSecondary();

    Chip& m_chip;
    char m_command = 0;
    std::optional<ImageReceiver> m_image; // while a download is under way
    LoadedImages m_loaded;
};

} // namespace zrkboard
