#pragma once

#include <QString>
#include <Qt>

class QKeyEvent;

namespace zrk {

/// Returns the characters that a key press types on the board's terminal, each with a code from 0 to 255:
///
///   Enter 13, Backspace 8, Tab 9, Escape 27, Ctrl+A to Ctrl+Z 1 to 26, Ctrl+[ \ ] ^ _ 27 to 31
///   arrows, Home, End, Insert, Delete, Page Up and Down, F1 to F12   the usual terminal's ESC sequences
///   any other text as it stands, without the characters that have no single-byte code
///
/// Returns "" for keys that type nothing: Alt and Ctrl+Shift combinations, and arrows and the like with a
/// modifier.
[[nodiscard]] QString typedText(int key, Qt::KeyboardModifiers modifiers, const QString& text);
[[nodiscard]] QString typedText(const QKeyEvent& press);

/// Returns what a key press means for the clipboard while keys go to the board: Ctrl+Shift+C and V, and those
/// with Insert.
enum class EditKey { None, Copy, Paste };
[[nodiscard]] EditKey editKey(const QKeyEvent& press);

/// Returns true for the key that pulses DTR.
[[nodiscard]] bool isAltB(const QKeyEvent& press);

/// Returns the text without the characters that do not fit into one byte.
[[nodiscard]] QString singleByteText(const QString& text);

} // namespace zrk
