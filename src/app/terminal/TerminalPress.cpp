#include "app/terminal/TerminalPress.h"

#include "app/TypedText.h"

#include <algorithm>
#include <array>
#include <vterm_keycodes.h>

namespace zrk {
namespace {

struct SpecialKey {
    int key;
    int special;
};

constexpr std::array kSpecialKeys{
    SpecialKey{Qt::Key_Return, VTERM_KEY_ENTER},     SpecialKey{Qt::Key_Enter, VTERM_KEY_ENTER},
    SpecialKey{Qt::Key_Tab, VTERM_KEY_TAB},          SpecialKey{Qt::Key_Backspace, VTERM_KEY_BACKSPACE},
    SpecialKey{Qt::Key_Escape, VTERM_KEY_ESCAPE},    SpecialKey{Qt::Key_Up, VTERM_KEY_UP},
    SpecialKey{Qt::Key_Down, VTERM_KEY_DOWN},        SpecialKey{Qt::Key_Left, VTERM_KEY_LEFT},
    SpecialKey{Qt::Key_Right, VTERM_KEY_RIGHT},      SpecialKey{Qt::Key_Insert, VTERM_KEY_INS},
    SpecialKey{Qt::Key_Delete, VTERM_KEY_DEL},       SpecialKey{Qt::Key_Home, VTERM_KEY_HOME},
    SpecialKey{Qt::Key_End, VTERM_KEY_END},          SpecialKey{Qt::Key_PageUp, VTERM_KEY_PAGEUP},
    SpecialKey{Qt::Key_PageDown, VTERM_KEY_PAGEDOWN}};

int specialKey(int key) {
    if (key >= Qt::Key_F1 && key <= Qt::Key_F12)
        return VTERM_KEY_FUNCTION_0 + 1 + key - Qt::Key_F1;
    const auto* found = std::find_if(kSpecialKeys.begin(), kSpecialKeys.end(),
                                     [key](const SpecialKey& one) { return one.key == key; });
    return found == kSpecialKeys.end() ? 0 : found->special;
}

bool isOfTheSystem(int key, Qt::KeyboardModifiers modifiers) {
    if (modifiers.testFlag(Qt::MetaModifier))
        return true;
    return modifiers.testFlag(Qt::AltModifier) && (key == Qt::Key_F4 || key == Qt::Key_Space);
}

bool isPrintable(const QString& text) {
    constexpr ushort kFirst = 0x20;
    constexpr ushort kRubout = 0x7F;
    return !text.isEmpty() && text[0].unicode() >= kFirst && text[0].unicode() != kRubout;
}

} // namespace

TerminalPress terminalPress(int key, Qt::KeyboardModifiers modifiers, const QString& text) {
    if (isOfTheSystem(key, modifiers))
        return {};
    const bool control = modifiers.testFlag(Qt::ControlModifier);
    const bool alt = modifiers.testFlag(Qt::AltModifier);
    const bool shift = modifiers.testFlag(Qt::ShiftModifier);
    TerminalPress press;
    press.special = specialKey(key);
    if (press.special == VTERM_KEY_TAB && (control || shift))
        return {};
    if (press.special != 0) {
        // With Shift or Ctrl these would be sequences that few programs of a board understand.
        const bool isPlain = press.special <= VTERM_KEY_ESCAPE;
        press.modifiers = isPlain ? modifiers & Qt::AltModifier : modifiers;
    } else if (control && !alt) {
        press.text = key == Qt::Key_Space ? QString(QChar(0)) : typedText(key, modifiers, text);
    } else if (isPrintable(text)) {
        press.text = text;
        press.followsEscape = alt && !control; // both are AltGr on some systems
    }
    return press;
}

} // namespace zrk
