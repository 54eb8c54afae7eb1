#pragma once

#include "controls/Controls.h"
#include "controls/SharedState.h"
#include "platform/MessageBoxes.h"

namespace zrk {

class EventLoop;
class FileDialog;

/// What all parts of one loader have in common: its state, its controls, and the clock and the people around
/// it, who must outlive it.
struct Desk {
    Desk(EventLoop& eventLoop, MessageBoxes& messageBoxes, FileDialog& dialog)
        : loop(eventLoop), boxes(messageBoxes), fileDialog(dialog) {}
    Desk(const Desk&) = delete;
    Desk& operator=(const Desk&) = delete;

    /// Shows a message box; MessageText keeps its prompt. The event loop runs while it is open.
    Answer show(const MessageBox& box);
    /// The same with an OK button.
    void tell(const QString& prompt, MessageIcon icon, const QString& title);

    EventLoop& loop;
    MessageBoxes& boxes;
    FileDialog& fileDialog;
    SharedState state;
    Controls controls;
};

} // namespace zrk
