#include "app/ConsoleView.h"

#include "app/TypedText.h"

#include <QFontDatabase>
#include <QGuiApplication>
#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QMenu>
#include <QMimeData>
#include <QScopedValueRollback>
#include <QScrollBar>

namespace zrk {
namespace {

constexpr int kTabColumns = 8;

enum class EditKey { None, Copy, Paste };

EditKey editKey(const QKeyEvent& event) {
    const Qt::KeyboardModifiers modifiers = event.modifiers() & ~Qt::KeypadModifier;
    if (modifiers == (Qt::ControlModifier | Qt::ShiftModifier)) {
        if (event.key() == Qt::Key_C)
            return EditKey::Copy;
        if (event.key() == Qt::Key_V)
            return EditKey::Paste;
    }
    if (event.key() == Qt::Key_Insert && modifiers == Qt::ControlModifier)
        return EditKey::Copy;
    if (event.key() == Qt::Key_Insert && modifiers == Qt::ShiftModifier)
        return EditKey::Paste;
    return EditKey::None;
}

/// By its looks: not every fixed-pitch font says that it is one.
bool isFixedPitch(const QFont& font) {
    const QFontMetrics metrics(font);
    return metrics.horizontalAdvance(QLatin1Char('i')) == metrics.horizontalAdvance(QLatin1Char('W'));
}

bool isAltB(const QKeyEvent& event) {
    return event.key() == Qt::Key_B && event.modifiers() == Qt::AltModifier;
}

} // namespace

QFont consoleFont() {
    const QString design = QStringLiteral("Courier New");
    const QString signs = QStringLiteral("ZRK Signs");
    const QStringList installed = QFontDatabase::families();
    if (!installed.contains(signs))
        QFontDatabase::addApplicationFont(QStringLiteral(":/fonts/zrk-signs.ttf"));
    QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    if (installed.contains(design)) {
        font.setFamily(design);
        font.setPointSizeF(8.25);
    }
    font.setStyleHint(QFont::Monospace);
    if (!isFixedPitch(font)) // a desktop without settings may have none of its own
        font.setFamily(QStringLiteral("monospace"));
    // Few fonts have the signs themselves. The first family must be a real one: an alias gives way to the
    // second.
    font.setFamilies({QFontInfo(font).family(), signs});
    return font;
}

ConsoleView::ConsoleView(QWidget* parent) : QPlainTextEdit(parent) {
    setReadOnly(true);
    setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    setAttribute(Qt::WA_InputMethodEnabled); // dead keys and composing, which a read-only text goes without
    setUndoRedoEnabled(false);
    setWordWrapMode(QTextOption::WrapAnywhere);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    setFont(consoleFont());
    setTabStopDistance(kTabColumns * QFontMetricsF(font()).horizontalAdvance(QLatin1Char(' ')));
    setAcceptDrops(false);
    setCenterOnScroll(false);
    // Read-only holds for keys and mouse; an assistive tool writes into the document all the same.
    connect(document(), &QTextDocument::contentsChanged, this, [this] {
        if (!m_isFollowing)
            Q_EMIT overwritten();
    });
}

void ConsoleView::follow(const QString& text, qsizetype removed, qsizetype added) {
    const QScopedValueRollback following(m_isFollowing, true);
    const ConsoleDisplay::Edit edit = m_display.follow(text, removed, added);
    QTextCursor end(document());
    if (edit.removesAll)
        end.select(QTextCursor::Document);
    else {
        end.movePosition(QTextCursor::End);
        end.movePosition(QTextCursor::PreviousCharacter, QTextCursor::KeepAnchor,
                         static_cast<int>(edit.removed));
    }
    end.insertText(edit.inserted);
    end.movePosition(QTextCursor::End);
    setTextCursor(end);
    verticalScrollBar()->setValue(verticalScrollBar()->maximum());
}

bool ConsoleView::event(QEvent* event) {
    if (event->type() == QEvent::ShortcutOverride) {
        // What the board or Alt+B takes must not become an access key or a shortcut of the window first.
        const auto& press = *static_cast<QKeyEvent*>(event);
        if (isAltB(press) || editKey(press) != EditKey::None ||
            (keysGoToBoard() && !typedText(press).isEmpty())) {
            event->accept();
            return true;
        }
    }
    return QPlainTextEdit::event(event);
}

void ConsoleView::keyPressEvent(QKeyEvent* event) {
    const Qt::KeyboardModifiers modifiers = event->modifiers();
    Q_EMIT keyDown(event->key(), modifiers.testFlag(Qt::AltModifier), modifiers.testFlag(Qt::ShiftModifier),
                   modifiers.testFlag(Qt::ControlModifier));
    switch (editKey(*event)) {
    case EditKey::Copy:
        copy();
        return;
    case EditKey::Paste:
        paste(QClipboard::Clipboard);
        return;
    case EditKey::None:
        break;
    }
    const QString characters = keysGoToBoard() ? typedText(*event) : QString();
    if (characters.isEmpty())
        QPlainTextEdit::keyPressEvent(event);
    else
        type(characters);
}

void ConsoleView::inputMethodEvent(QInputMethodEvent* event) {
    if (keysGoToBoard())
        type(singleByteText(event->commitString()));
    event->accept();
}

void ConsoleView::type(const QString& characters) {
    for (const QChar character : characters)
        Q_EMIT typed(character.unicode());
}

void ConsoleView::paste(QClipboard::Mode from) {
    if (keysGoToBoard())
        Q_EMIT pasted(QGuiApplication::clipboard()->text(from));
}

void ConsoleView::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() == Qt::MiddleButton && QGuiApplication::clipboard()->supportsSelection())
        paste(QClipboard::Selection);
    else
        QPlainTextEdit::mouseReleaseEvent(event);
}

void ConsoleView::contextMenuEvent(QContextMenuEvent* event) {
    QMenu menu(this);
    QAction* copyAction = menu.addAction(QStringLiteral("&Copy"), this, &ConsoleView::copy);
    copyAction->setEnabled(textCursor().hasSelection());
    if (keysGoToBoard()) {
        QAction* pasteAction =
            menu.addAction(QStringLiteral("&Paste"), this, [this] { paste(QClipboard::Clipboard); });
        pasteAction->setEnabled(!QGuiApplication::clipboard()->text().isEmpty());
    }
    QAction* selectAll = menu.addAction(QStringLiteral("Select &All"), this, &ConsoleView::selectAll);
    selectAll->setEnabled(!document()->isEmpty());
    menu.exec(event->globalPos());
}

bool ConsoleView::focusNextPrevChild(bool next) {
    // Tab belongs to the board then; Shift+Tab is the way out.
    if (next && keysGoToBoard())
        return false;
    return QPlainTextEdit::focusNextPrevChild(next);
}

QMimeData* ConsoleView::createMimeDataFromSelection() const {
    QString shown = textCursor().selectedText();
    shown.replace(QChar::ParagraphSeparator, QLatin1Char('\n'));
    auto* copied = new QMimeData;
    copied->setText(m_display.original(shown, textCursor().selectionStart()));
    return copied;
}

} // namespace zrk
