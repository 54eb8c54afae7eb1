#pragma once

#include "boot/WaitDialogView.h"
#include "platform/EventLoop.h"

#include <QProcess>
#include <QStringList>

#include <chrono>
#include <optional>

namespace zrk {

class Output;

/// The wait dialog where there is no window: prints the instruction, starts whatever cycles the power, and
/// gives up after the limit.
class PowerOnNotice final : public WaitDialogView {
  public:
    /// Without a limit the wait ends on the BootID or on a cancel only.
    /// `command` is a program and its arguments, "" for none; it runs with the port in ZRK_PORT.
    PowerOnNotice(EventLoop& loop, Output& output, std::optional<std::chrono::milliseconds> limit,
                  const QString& command);
    ~PowerOnNotice() override;
    PowerOnNotice(const PowerOnNotice&) = delete;
    PowerOnNotice& operator=(const PowerOnNotice&) = delete;

    void show(WaitDialog& dialog) override;
    void hide() override;

  private:
    void giveUp();
    void startCommand();

    Output& m_output;
    std::optional<std::chrono::milliseconds> m_limit;
    QStringList m_command;
    QProcess m_process;
    std::unique_ptr<Timer> m_timer;
    WaitDialog* m_dialog = nullptr; ///< the one being shown
    bool m_again = false;           ///< it was wanted while the last one still ran
};

} // namespace zrk
