#pragma once

#include "serial/Link.h"

namespace zrk {

class WaitDialogView;

/// `frmWaitForComm`: asks for a power cycle and reads until the boot ROM's BootID arrives. Each wait makes
/// one.
class WaitDialog {
  public:
    WaitDialog(Link& link, WaitDialogView& view);

    /// Shows the dialog and waits for "5" without a time limit, echoing all that arrives; yields. Afterwards
    /// CancelRequested is false if the BootID has been read, true after a cancel. The view is hidden again in
    /// any case, also when a port failure passes through.
    void showModal();

    Label lblMsg;
    Label lblSeen; ///< port, seconds, received bytes; after 15 s without success, what to check
    CommandButton CancelButton;
    CommandButton cmdOut;
    TextBox txtOut;

    void CancelButton_Click();

    /// Ends the wait, because a limit of the user has run out or the power could not be switched.
    void giveUp(Outcome why);

    /// Sends the text of txtOut as it stands and switches DebugMode on. A failing port ends the wait, whose
    /// operation then reports it.
    void cmdOut_Click();

    /// Pulses DTR on Alt alone with B (key code 66); yields during the pulse.
    void Form_KeyDown(int keyCode, bool alt, bool shift, bool control);

    /// Cancels the wait if the user closes the dialog before the BootID.
    void Form_Unload();

  private:
    void Form_Load();
    void Form_Activate();
    void showWhatDoesNotCount();
    void readUntilBootId();
    [[nodiscard]] bool reopen(const QString& why);
    void showSeen();

    Link& m_link;
    WaitDialogView& m_view;
    std::unique_ptr<Timer> m_timer;
    EventLoop::TimePoint m_since;
    qsizetype m_received = 0;
    bool m_BootIdSeen = false;
};

} // namespace zrk
