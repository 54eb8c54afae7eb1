#include "app/TypedText.h"

#include <QKeyEvent>

#include <algorithm>
#include <array>

namespace zrk {
namespace {

constexpr ushort kHighestCode = 0xFF;
constexpr ushort kFirstPrintable = 0x20;

QString code(int character) {
    return QString(QChar(static_cast<ushort>(character)));
}

/// Returns what a usual terminal sends for a key that has no character; nothing for other keys.
QString keySequence(int key) {
    struct Sequence {
        int key;
        const char* text;
    };
    static constexpr std::array kSequences{
        Sequence{Qt::Key_Up, "\x1B[A"},      Sequence{Qt::Key_Down, "\x1B[B"},
        Sequence{Qt::Key_Right, "\x1B[C"},   Sequence{Qt::Key_Left, "\x1B[D"},
        Sequence{Qt::Key_Home, "\x1B[H"},    Sequence{Qt::Key_End, "\x1B[F"},
        Sequence{Qt::Key_Insert, "\x1B[2~"}, Sequence{Qt::Key_Delete, "\x1B[3~"},
        Sequence{Qt::Key_PageUp, "\x1B[5~"}, Sequence{Qt::Key_PageDown, "\x1B[6~"},
        Sequence{Qt::Key_F1, "\x1BOP"},      Sequence{Qt::Key_F2, "\x1BOQ"},
        Sequence{Qt::Key_F3, "\x1BOR"},      Sequence{Qt::Key_F4, "\x1BOS"},
        Sequence{Qt::Key_F5, "\x1B[15~"},    Sequence{Qt::Key_F6, "\x1B[17~"},
        Sequence{Qt::Key_F7, "\x1B[18~"},    Sequence{Qt::Key_F8, "\x1B[19~"},
        Sequence{Qt::Key_F9, "\x1B[20~"},    Sequence{Qt::Key_F10, "\x1B[21~"},
        Sequence{Qt::Key_F11, "\x1B[23~"},   Sequence{Qt::Key_F12, "\x1B[24~"},
    };
    const auto* found = std::find_if(kSequences.begin(), kSequences.end(),
                                     [key](const Sequence& one) { return one.key == key; });
    return found == kSequences.end() ? QString() : QString::fromLatin1(found->text);
}

/// Returns the text of Ctrl without Alt, which types control characters only.
QString controlText(int key, bool shift, const QString& text) {
    if (key >= Qt::Key_A && key <= Qt::Key_Z)
        return shift ? QString() : code(key - Qt::Key_A + 1);
    return text.size() == 1 && text[0].unicode() < kFirstPrintable ? text : QString();
}

} // namespace

QString singleByteText(const QString& text) {
    QString fitting = text;
    fitting.removeIf([](QChar c) { return c.unicode() > kHighestCode; });
    return fitting;
}

QString typedText(int key, Qt::KeyboardModifiers modifiers, const QString& text) {
    const bool control = modifiers.testFlag(Qt::ControlModifier);
    const bool alt = modifiers.testFlag(Qt::AltModifier);
    // On some systems both together are AltGr, which types the key's third character.
    if ((alt && !control) || modifiers.testFlag(Qt::MetaModifier))
        return {};
    const bool plain = (modifiers & ~Qt::KeypadModifier) == Qt::NoModifier;
    if (const QString sequence = keySequence(key); !sequence.isEmpty() && (plain || key == Qt::Key_Delete))
        return plain ? sequence : QString();
    switch (key) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        return code(13);
    case Qt::Key_Backspace:
        return code(8);
    case Qt::Key_Tab:
        return control ? QString() : code(9);
    case Qt::Key_Escape:
        return code(27);
    case Qt::Key_Backtab:
        return {};
    default:
        break;
    }
    if (control && !alt)
        return controlText(key, modifiers.testFlag(Qt::ShiftModifier), text);
    if (control && (text.isEmpty() || text[0].unicode() < kFirstPrintable))
        return {};
    return singleByteText(text);
}

QString typedText(const QKeyEvent& press) {
    return typedText(press.key(), press.modifiers(), press.text());
}

EditKey editKey(const QKeyEvent& press) {
    const Qt::KeyboardModifiers modifiers = press.modifiers() & ~Qt::KeypadModifier;
    if (modifiers == (Qt::ControlModifier | Qt::ShiftModifier)) {
        if (press.key() == Qt::Key_C)
            return EditKey::Copy;
        if (press.key() == Qt::Key_V)
            return EditKey::Paste;
    }
    if (press.key() == Qt::Key_Insert && modifiers == Qt::ControlModifier)
        return EditKey::Copy;
    if (press.key() == Qt::Key_Insert && modifiers == Qt::ShiftModifier)
        return EditKey::Paste;
    return EditKey::None;
}

bool isAltB(const QKeyEvent& press) {
    return press.key() == Qt::Key_B && press.modifiers() == Qt::AltModifier;
}

} // namespace zrk
