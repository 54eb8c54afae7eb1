#pragma once

#include "serial/Link.h"

namespace zrk {

class WaitDialogView;

/// `frmWaitForComm`: asks for a power cycle and reads until the boot ROM's BootID arrives.
/// A new one is made for every wait.
class WaitDialog {
  public:
    WaitDialog(Link& link, WaitDialogView& view);

    /// Shows the dialog and waits for "5" without a time limit, echoing all that arrives; yields.
    /// Afterwards CancelRequested tells: False, the BootID has been read; True, it was cancelled.
    /// The view is hidden again in any case, also when a port failure passes through.
    void showModal();

    Label lblMsg;
    CommandButton CancelButton;
    CommandButton cmdOut;
    TextBox txtOut;

    void CancelButton_Click();

    /// Ends the wait: a limit that the user set for it has run out, or the power could not be switched.
    void giveUp(Outcome why);

    /// Sends the text of txtOut as it stands and switches DebugMode on.
    /// A failing port ends the wait, whose operation then reports it.
    void cmdOut_Click();

    /// Alt alone with B (key code 66) pulses DTR; yields during the pulse.
    void Form_KeyDown(int keyCode, bool alt, bool shift, bool control);

    /// The user closed the dialog: before the BootID that is a cancel.
    void Form_Unload();

  private:
    void Form_Load();
    void Form_Activate();
    void showWhatDoesNotCount();
    void readUntilBootId();
    [[nodiscard]] bool reopen(const QString& why);

    Link& m_link;
    WaitDialogView& m_view;
    bool m_BootIdSeen = false;
};

} // namespace zrk
