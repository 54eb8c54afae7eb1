#pragma once

#include <QString>
#include <Qt>

namespace zrk {

/// A key press as a terminal takes it: a special key, a text, or neither.
struct TerminalPress {
    int special = 0; ///< a key of libvterm; 0: none
    Qt::KeyboardModifiers modifiers;
    QString text;
    bool followsEscape = false; ///< the text comes after an ESC, as Alt makes it

    [[nodiscard]] bool isEmpty() const { return special == 0 && text.isEmpty(); }
};

/// Returns what the key types. Alt with a character is that character after an ESC. Empty for keys that
/// belong to the window or to the system: Ctrl+Shift with a letter, Shift+Tab, Alt+F4, Alt+Space.
[[nodiscard]] TerminalPress terminalPress(int key, Qt::KeyboardModifiers modifiers, const QString& text);

} // namespace zrk
