#pragma once

#include "controls/Controls.h"
#include "controls/SharedState.h"
#include "platform/MessageBoxes.h"

namespace zrk {

class EventLoop;
class FileDialog;

/// The common part of all components of one loader: its state, its controls, and the interfaces to clock and
/// user, which must outlive it.
struct Desk {
    Desk(EventLoop& eventLoop, MessageBoxes& messageBoxes, FileDialog& dialog)
        : loop(eventLoop), boxes(messageBoxes), fileDialog(dialog) {}
    Desk(const Desk&) = delete;
    Desk& operator=(const Desk&) = delete;

    /// Shows a message box and returns the answer; MessageText keeps its prompt. Yields while it is open.
    Answer show(const MessageBox& box);
    /// Does the same with an OK button.
    void tell(const QString& prompt, MessageIcon icon, const QString& title);

    EventLoop& loop;
    MessageBoxes& boxes;
    FileDialog& fileDialog;
    SharedState state;
    Controls controls;
};

} // namespace zrk
