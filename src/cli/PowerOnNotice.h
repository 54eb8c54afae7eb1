#pragma once

#include "boot/WaitDialogView.h"
#include "cli/Options.h"
#include "cli/PowerSwitch.h"
#include "platform/EventLoop.h"

#include <chrono>
#include <functional>
#include <optional>

namespace zrk {

class Output;

/// The wait dialog of the command line: prints the instruction, has the power switched, and ends the wait
/// after the limit.
class PowerOnNotice final : public WaitDialogView {
  public:
    using TimePoint = EventLoop::TimePoint;

    /// It uses the limits for the power-on, for the switch, and for the port. Without one only the BootID or
    /// a cancel ends the wait; with a switch it begins when that has ended. The switch runs with the port in
    /// ZRK_PORT.
    PowerOnNotice(EventLoop& loop, Output& output, const Limits& limits, const QString& command);
    ~PowerOnNotice() override;
    PowerOnNotice(const PowerOnNotice&) = delete;
    PowerOnNotice& operator=(const PowerOnNotice&) = delete;

    void show(WaitDialog& dialog) override;
    void hide() override;
    [[nodiscard]] bool countsBootId() const override { return !m_switch.isRunning(); }
    [[nodiscard]] std::optional<std::chrono::milliseconds> reopeningLimit(const QString& why) override;

    /// Switches the power before there is a port; yields. False if that failed, or if `isStopped`.
    [[nodiscard]] bool switchPower(const std::function<bool()>& isStopped);

    /// Waits, yielding, for a switch that is still under way after the wait for the board was ended: to its
    /// own limit, or until `end`.
    void awaitSwitch(std::optional<TimePoint> end);

    /// Ends a switch that is still under way after that wait.
    void endSwitch();

  private:
    void giveUp();
    void startSwitch();
    void onSwitched(const QString& fault);

    EventLoop& m_loop;
    Output& m_output;
    const Limits::Limit m_limit;
    const Limits::Limit m_portLimit;
    PowerSwitch m_switch;
    bool m_hasFailed = false; ///< the switch, the last time
    std::unique_ptr<Timer> m_timer;
    WaitDialog* m_dialog = nullptr; ///< the one being shown
};

} // namespace zrk
