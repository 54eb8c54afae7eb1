#pragma once

#include "board/Chip.h"
#include "board/FarEnd.h"
#include "board/WireFaults.h"

#include <deque>
#include <functional>

namespace zrkboard {

// A bad wire with a board at its end. The seed's faults damage the bytes between loader and board one by one.
// What a board sends while no loader listens is left out, so that a seed's faults do not depend on when the
// loader came.
class BadWire final : public FarEnd {
  public:
    // Is bad in the first `faultyRuns` runs only; 0 = in all. `board` outlives the wire.
    BadWire(FarEnd& board, const WireFaults& faults, unsigned faultyRuns = 0);

    // Reports that byte `position` (from 0) of the direction, being `byte`, meets the fault, before the board
    // gets what is left of it.
    using FaultListener =
        std::function<void(bool toBoard, std::uint64_t position, std::uint8_t byte, WireFault fault)>;
    void onFault(FaultListener listener) { m_listener = std::move(listener); }
    void setLog(Log log) { m_log = std::move(log); }

    void powerOn(TimePoint now) override;
    [[nodiscard]] unsigned powerOns() const override { return m_board.powerOns(); }
    void receive(std::span<const std::uint8_t> bytes, TimePoint now) override;
    void advance(TimePoint now) override;
    [[nodiscard]] std::optional<TimePoint> nextDeadline() const override;
    [[nodiscard]] std::vector<std::uint8_t> takeOutput() override;
    void portOpened(TimePoint now) override;
    void portClosed(TimePoint now) override;
    void hangUp(const std::string& why) override;
    [[nodiscard]] bool hungUp() const override { return m_board.hungUp(); }
    [[nodiscard]] State state() const override { return m_board.state(); }
    [[nodiscard]] bool isOver() const override { return m_board.isOver(); }

    // Returns both directions' bytes and faults, for the end.
    [[nodiscard]] std::string summary() const;

  private:
    struct Arrival {
        TimePoint when;
        std::vector<std::uint8_t> bytes;
    };
    using Way = std::deque<Arrival>;

    [[nodiscard]] bool isBad() const { return m_faultyRuns == 0 || powerOns() <= m_faultyRuns; }
    bool carry(std::uint8_t byte, BadDirection& direction, bool toBoard, Way& way);
    void collect();

    FarEnd& m_board;
    unsigned m_faultyRuns;
    std::uint64_t m_seed;
    BadDirection m_toBoard;
    BadDirection m_toLoader;
    Way m_boardBound;
    Way m_loaderBound;
    FaultListener m_listener;
    Log m_log;
    TimePoint m_now;
    bool m_open = false;
};

} // namespace zrkboard
