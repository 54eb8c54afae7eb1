#pragma once

#include <QString>

#include <chrono>
#include <optional>

namespace zrk {

class WaitDialog;

/// Shows the wait dialog to a person. The dialog itself does the waiting, so show() must return at
/// once; what the user does reaches the dialog's handlers from the event loop.
class WaitDialogView {
  public:
    virtual ~WaitDialogView() = default;

    /// Brings the dialog up, modal to the main window. `dialog` lives until hide().
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
