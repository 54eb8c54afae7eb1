#pragma once

#include "board/Chip.h"
#include "board/ImageReceiver.h"

namespace zrkboard {

// The chip's serial boot ROM: sends "5" until answered, unlocks, takes one image into IRAM, and runs it.
//
//     board        loader
//     5                     every bootIdInterval until
//                  A
//     5
//                  U 3
//     R
//                  header, code
class BootRom : public Partner {
  public:
    explicit BootRom(Chip& chip);

    void receive(std::uint8_t byte) override;
    [[nodiscard]] bool expectsCode() const override;
    [[nodiscard]] std::optional<TimePoint> deadline() const override;
    void tick() override;
    [[nodiscard]] State state() const override;

  private:
    enum class Phase { Announcing, FirstUnlock, SecondUnlock, Image };

    void receiveAnswer(std::uint8_t byte);
    void receiveUnlock(std::uint8_t byte, std::uint8_t expected);
    void receiveImage(std::uint8_t byte);
    void runImage();

    Chip& m_chip;
    Phase m_phase = Phase::Announcing;
    TimePoint m_nextAnnouncement;
    bool m_announced = false;
    ImageReceiver m_image;
};

} // namespace zrkboard
