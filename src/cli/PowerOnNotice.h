#pragma once

#include "boot/WaitDialogView.h"
#include "platform/EventLoop.h"

#include <chrono>
#include <optional>

namespace zrk {

class Output;

/// The wait dialog where there is no window: prints the instruction and gives up after the limit.
class PowerOnNotice final : public WaitDialogView {
  public:
    /// Without a limit the wait ends on the BootID or on a cancel only.
    PowerOnNotice(EventLoop& loop, Output& output, std::optional<std::chrono::milliseconds> limit);

    void show(WaitDialog& dialog) override;
    void hide() override;

  private:
    void giveUp();

    Output& m_output;
    std::optional<std::chrono::milliseconds> m_limit;
    std::unique_ptr<Timer> m_timer;
    WaitDialog* m_dialog = nullptr; ///< the one being shown
};

} // namespace zrk
