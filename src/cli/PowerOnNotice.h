#pragma once

#include "boot/WaitDialogView.h"
#include "cli/PowerSwitch.h"
#include "platform/EventLoop.h"

#include <chrono>
#include <optional>

namespace zrk {

class Output;

/// The wait dialog where there is no window: prints the instruction, has the power switched, and gives up
/// after the limit.
class PowerOnNotice final : public WaitDialogView {
  public:
    using TimePoint = EventLoop::TimePoint;

    /// Without a limit the wait ends on the BootID or on a cancel only; with a switch it begins when that has
    /// ended. The switch runs with the port in ZRK_PORT.
    PowerOnNotice(EventLoop& loop, Output& output, std::optional<std::chrono::milliseconds> limit,
                  const QString& command, std::chrono::milliseconds commandLimit);
    ~PowerOnNotice() override;
    PowerOnNotice(const PowerOnNotice&) = delete;
    PowerOnNotice& operator=(const PowerOnNotice&) = delete;

    void show(WaitDialog& dialog) override;
    void hide() override;
    [[nodiscard]] bool countsBootId() const override { return !m_switch.isRunning(); }

    /// Waits, yielding, for a switch that is still under way after the wait for the board has been given up:
    /// to its own limit, or until `end`.
    void awaitSwitch(std::optional<TimePoint> end);

    /// Ends a switch that is still under way after that wait.
    void endSwitch();

  private:
    void giveUp();
    void onSwitched(const QString& fault);

    EventLoop& m_loop;
    Output& m_output;
    std::optional<std::chrono::milliseconds> m_limit;
    PowerSwitch m_switch;
    std::unique_ptr<Timer> m_timer;
    WaitDialog* m_dialog = nullptr; ///< the one being shown
};

} // namespace zrk
