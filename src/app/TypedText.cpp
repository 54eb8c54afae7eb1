#include "app/TypedText.h"

#include <QKeyEvent>

namespace zrk {
namespace {

constexpr ushort kHighestCode = 0xFF;
constexpr ushort kFirstPrintable = 0x20;

QString code(int character) {
    return QString(QChar(static_cast<ushort>(character)));
}

/// Ctrl without Alt types control characters only.
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
    // Both together are what AltGr is on some systems; there it types the key's third character.
    if ((alt && !control) || modifiers.testFlag(Qt::MetaModifier))
        return {};
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
    case Qt::Key_Delete:
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

} // namespace zrk
