#pragma once

#include "board/Chip.h"
#include "board/FarEnd.h"
#include "board/Options.h"
#include "board/Partner.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <vector>

// A model of the board: bytes in, bytes out, time as an argument. No thread, no clock, no file.
//
//     zrkboard::BoardOptions options;
//     options.misbehaviour.faults.push_back(zrkboard::parseFault("accept=refuse"));
//     zrkboard::Board board(options);
//     board.setLog([](TimePoint when, const std::string& what) { ... });   // optional
//     board.powerOn(now);
//     while (...) {
//         // 1. wait until board.nextDeadline() or until the loader has sent something
//         // 2. board.receive(byte, now) for each byte sent, or board.advance(now) if there was none
//         // 3. board.takeOutput(): what the board has sent up to now
//         // 4. board.hungUp(): the line is gone
//     }
//     board.sdram().read(0x80000004, size);
//
// `now` never runs backwards. A call may skip any amount of time: what was due in between happens in its
// order and at its own time. Bytes arrive and leave in no time (see PacedQueue for a line).

namespace zrkboard {

class Board final : public FarEnd {
  public:
    explicit Board(BoardOptions options = {});
    // Uses the caller's NAND, e.g. one that is kept in a file.
    Board(BoardOptions options, Nand nand);

    void setLog(Log log) { m_chip.setLog(std::move(log)); }

    // Starts a run at the boot ROM, also during another run: what the board has not sent yet is lost,
    // memories keep their contents. Mends a line that was hung up.
    void powerOn(TimePoint now) override;

    // Hands a byte to the board. Does nothing without power or after a hang-up.
    void receive(std::uint8_t byte, TimePoint now);
    void receive(std::span<const std::uint8_t> bytes, TimePoint now) override;

    // Lets everything happen that is due up to now.
    void advance(TimePoint now) override;

    // Returns when something will happen by itself; empty if only a byte can change anything.
    [[nodiscard]] std::optional<TimePoint> nextDeadline() const override;

    // Pulls the adapter: bytes no longer come in or go out. `why` completes "hangs up" in the log.
    void hangUp(const std::string& why) override;

    // Takes what has left the board since the last call, up to the last receive() or advance(): plain, or
    // with the time at which each piece left.
    [[nodiscard]] std::vector<std::uint8_t> takeOutput() override;
    [[nodiscard]] std::vector<TimedBytes> takeTimedOutput();

    [[nodiscard]] State state() const override;
    [[nodiscard]] bool hungUp() const override { return m_hungUp; }

    [[nodiscard]] unsigned powerOns() const override { return m_powerOns; }
    // Counts from power-on.
    [[nodiscard]] std::uint64_t receivedBytes() const { return m_received; }
    [[nodiscard]] std::uint64_t codeBytes() const { return m_code; }

    [[nodiscard]] const Memory& iram() const { return m_chip.iram(); }
    [[nodiscard]] const Memory& sdram() const { return m_chip.sdram(); }
    [[nodiscard]] const Nand& nand() const { return m_chip.nand(); }
    // Lets a test fill it beforehand.
    [[nodiscard]] Nand& nand() { return m_chip.nand(); }

  private:
    [[nodiscard]] std::optional<TimePoint> nextEvent() const;
    void deliver(std::uint8_t byte);
    void settle();

    Chip m_chip;
    std::unique_ptr<Partner> m_partner; // null without power
    std::optional<TimePoint> m_hangUpAt;
    bool m_hungUp = false;
    unsigned m_powerOns = 0;
    std::uint64_t m_received = 0;
    std::uint64_t m_code = 0;
};

} // namespace zrkboard
