#pragma once

#include "board/Fault.h"
#include "board/Memory.h"
#include "board/Nand.h"
#include "board/Options.h"
#include "board/Outbox.h"
#include "board/Partner.h"

#include <functional>
#include <memory>
#include <string>
#include <string_view>

namespace zrkboard {

using Log = std::function<void(TimePoint when, const std::string& what)>;

// The board as a partner uses it: its memories, its line, its log, and the way to the next partner.
class Chip {
  public:
    Chip(BoardOptions options, Nand nand);

    // Begins a run: faults are counted from 0, the line is empty.
    void restart(unsigned run);
    void setLog(Log log) { m_log = std::move(log); }
    void setNow(TimePoint now) { m_now = now; }
    [[nodiscard]] TimePoint now() const { return m_now; }

    [[nodiscard]] const BoardOptions& options() const { return m_options; }
    // Returns what goes wrong in this run.
    [[nodiscard]] const Misbehaviour& misbehaviour() const;

    [[nodiscard]] Memory& iram() { return m_iram; }
    [[nodiscard]] Memory& sdram() { return m_sdram; }
    [[nodiscard]] Nand& nand() { return m_nand; }
    [[nodiscard]] const Memory& iram() const { return m_iram; }
    [[nodiscard]] const Memory& sdram() const { return m_sdram; }
    [[nodiscard]] const Nand& nand() const { return m_nand; }
    [[nodiscard]] Outbox& outbox() { return m_outbox; }
    [[nodiscard]] const Outbox& outbox() const { return m_outbox; }

    // Answers after the time this takes the board and with whatever is to go wrong at this step. Returns
    // false if the answer was turned into a refusal: the partner does not go on.
    [[nodiscard]] bool answer(Step step, std::vector<std::uint8_t> bytes, Duration takes = Duration::zero());
    [[nodiscard]] bool answer(Step step, char byte, Duration takes = Duration::zero());

    // Sends text that no fault changes.
    void say(std::string_view text, Duration after = Duration::zero());

    void log(const std::string& what) const;

    // Lets the other partner take over once the present one has returned.
    void handOver(std::unique_ptr<Partner> next) { m_next = std::move(next); }
    [[nodiscard]] std::unique_ptr<Partner> takeNext() { return std::move(m_next); }
    // Answers nothing more until the power is cycled.
    void fallSilent(const std::string& why);
    // Starts the whole chip again at its boot ROM.
    void requestReset() { m_resetRequested = true; }
    [[nodiscard]] bool resetRequested() const { return m_resetRequested; }

  private:
    BoardOptions m_options;
    PagedMemory m_iram;
    PagedMemory m_sdram;
    Nand m_nand;
    Outbox m_outbox;
    FaultPlan m_faults;
    Log m_log;
    TimePoint m_now;
    std::unique_ptr<Partner> m_next;
    bool m_misbehaves = true;
    bool m_resetRequested = false;
};

} // namespace zrkboard
