#pragma once

#include <QString>

#include <chrono>
#include <optional>

namespace zrk {

class WaitDialog;

/// The view of the wait dialog. The dialog itself waits, so show() must return at once; what the user does
/// reaches the dialog's handlers from the event loop.
class WaitDialogView {
  public:
    virtual ~WaitDialogView() = default;

    /// Shows the dialog, modal to the main window. `dialog` lives until hide().
    virtual void show(WaitDialog& dialog) = 0;

    virtual void hide() = 0;

    /// False as long as a BootID is not the awaited one, because the board's power has not been switched yet.
    [[nodiscard]] virtual bool countsBootId() const { return true; }

    /// The port was lost, for the reason `why`. Returns how long to try to open it again; nothing to let the
    /// loss end the wait.
    [[nodiscard]] virtual std::optional<std::chrono::milliseconds> reopeningLimit(const QString& /*why*/) {
        return {};
    }
};

} // namespace zrk
