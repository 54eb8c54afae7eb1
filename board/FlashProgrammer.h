#pragma once

#include "board/Chip.h"
#include "board/FlashFrames.h"

namespace zrkboard {

// The flash-programming image "pg_sibl": woken with "F", it answers "F", then takes "S" and five frames in a
// fixed order. Any byte that differs ends the run in silence.
class FlashProgrammer : public Partner {
  public:
    explicit FlashProgrammer(Chip& chip) : m_chip(chip) {}

    void start() override;
    void receive(std::uint8_t byte) override;
    [[nodiscard]] bool expectsCode() const override;
    [[nodiscard]] State state() const override;

  private:
    enum class Phase { Wake, Start, VersionRequest, Header, Data, EndOfData, Complete, Done };

    void receiveLetter(std::uint8_t byte, std::uint8_t expected);
    void receiveFrame(std::uint8_t byte);
    void frameComplete();
    void headerComplete();
    void programPage();
    void expect(Phase phase, FrameLayout layout);
    void answerFrame(Step step, std::vector<std::uint8_t> frame, Duration takes = Duration::zero());

    Chip& m_chip;
    Phase m_phase = Phase::Wake;
    FrameReader m_frame;
    FlashHeader m_header;
    std::vector<std::uint8_t> m_page; // received and not yet in the NAND
    std::uint64_t m_programmed = 0;
};

} // namespace zrkboard
