#include "app/ConsoleView.h"

#include "app/ConsoleLayout.h"
#include "app/DocumentDisposal.h"
#include "app/TypedText.h"

#include <QFontDatabase>
#include <QGuiApplication>
#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QMenu>
#include <QMimeData>
#include <QScopedValueRollback>
#include <QScrollBar>

#include <algorithm>
#include <utility>

namespace zrk {
namespace {

constexpr int kTabColumns = 8;
constexpr qsizetype kMostAsleep = 65'536; // characters, which are shown in no time

/// Checks the glyphs: not every fixed-pitch font declares itself as one.
bool isFixedPitch(const QFont& font) {
    const QFontMetrics metrics(font);
    return metrics.horizontalAdvance(QLatin1Char('i')) == metrics.horizontalAdvance(QLatin1Char('W'));
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
    if (!isFixedPitch(font)) // a desktop without settings may not have one
        font.setFamily(QStringLiteral("monospace"));
    // Few fonts have the signs. The first family must be a real one: the second overrides an alias.
    font.setFamilies({QFontInfo(font).family(), signs});
    return font;
}

ConsoleView::ConsoleView(QWidget* parent) : QPlainTextEdit(parent) {
    setReadOnly(true);
    setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    setAttribute(Qt::WA_InputMethodEnabled); // dead keys and composing, which a read-only text does not have
    setWordWrapMode(QTextOption::WrapAnywhere);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    setFont(consoleFont());
    beginDocument();
    setAcceptDrops(false);
    setCenterOnScroll(false);
    connect(verticalScrollBar(), &QScrollBar::valueChanged, this, &ConsoleView::noteScrolling);
    // The text moves its scroll bar without a signal when pages are turned.
    connect(this, &ConsoleView::updateRequest, this, [this](const QRect&, int scrolledBy) {
        if (scrolledBy != 0)
            noteScrolling();
    });
}

void ConsoleView::beginDocument() {
    auto* document = new QTextDocument(this);
    m_layout = new ConsoleLayout(document);
    document->setDocumentLayout(m_layout);
    document->setUndoRedoEnabled(false);
    document->setDefaultFont(font());
    m_layout->setWidth(viewport()->width());
    setDocument(document);
    setTabStopDistance(kTabColumns * QFontMetricsF(font()).horizontalAdvance(QLatin1Char(' ')));
    // Read-only holds for keys and mouse; an assistive tool writes into the document all the same.
    connect(document, &QTextDocument::contentsChanged, this, [this] {
        if (!m_isFollowing)
            Q_EMIT overwritten();
    });
}

void ConsoleView::showAnew(const QString& text) {
    clearView();
    follow(text, 0, text.size());
}

void ConsoleView::follow(const QString& text, qsizetype removed, qsizetype added) {
    if (!m_isAsleep)
        return showEdit(text, removed, added);
    const qsizetype takenBack = std::min(removed, m_addedAsleep);
    m_removedAsleep += removed - takenBack;
    m_addedAsleep += added - takenBack;
    if (m_addedAsleep >= kMostAsleep)
        showEdit(text, std::exchange(m_removedAsleep, 0), std::exchange(m_addedAsleep, 0));
}

void ConsoleView::setAsleep(bool asleep, const QString& text) {
    m_isAsleep = asleep;
    if (!asleep && m_removedAsleep + m_addedAsleep > 0)
        showEdit(text, std::exchange(m_removedAsleep, 0), std::exchange(m_addedAsleep, 0));
}

void ConsoleView::showEdit(const QString& text, qsizetype removed, qsizetype added) {
    {
        const QScopedValueRollback following(m_isFollowing, true);
        const bool selects = textCursor().hasSelection() || m_isPressed;
        const int anchor = textCursor().anchor();
        const int position = textCursor().position();
        const int unchanged = write(m_display.follow(text, removed, added));
        // A cursor at the end of the document moves with what is inserted there, and a selection would grow.
        if (selects)
            select(std::min(anchor, unchanged), std::min(position, unchanged));
    }
    if (!viewStands())
        return goToEnd();
    const bool hadMore = std::exchange(m_hasMore, true);
    if (!hadMore)
        tellHold();
}

/// Returns the position up to which the document is unchanged.
int ConsoleView::write(const ConsoleDisplay::Edit& edit) {
    QTextCursor end(document());
    end.beginEditBlock();
    end.movePosition(QTextCursor::End);
    // Not by movePosition(), which takes a surrogate pair or a letter with its accents as one step.
    end.setPosition(end.position() - static_cast<int>(edit.removed), QTextCursor::KeepAnchor);
    const int unchanged = end.position();
    end.insertText(edit.inserted);
    end.endEditBlock();
    return unchanged;
}

/// Keeps the view where it is; setTextCursor() would scroll to the selection's end.
void ConsoleView::select(int anchor, int position) {
    const int shownFrom = verticalScrollBar()->value();
    QTextCursor selection(document());
    selection.setPosition(anchor);
    selection.setPosition(position, QTextCursor::KeepAnchor);
    setTextCursor(selection);
    verticalScrollBar()->setValue(shownFrom);
}

/// Keeps a selection; without one the caret goes to the end.
void ConsoleView::goToEnd() {
    const QScopedValueRollback following(m_isFollowing, true);
    if (!textCursor().hasSelection())
        placeCaret();
    verticalScrollBar()->setValue(verticalScrollBar()->maximum());
    if (std::exchange(m_hasMore, false))
        tellHold();
}

void ConsoleView::placeCaret() {
    QTextCursor caret(document());
    caret.movePosition(QTextCursor::End);
    setTextCursor(caret);
}

void ConsoleView::clearView() {
    const QScopedValueRollback following(m_isFollowing, true);
    m_display = {};
    m_removedAsleep = 0;
    m_addedAsleep = 0;
    QTextDocument* old = document();
    beginDocument();
    old->disconnect(this);
    new DocumentDisposal(old, this);
    m_hasMore = false;
    m_isScrolledUp = false;
    tellHold();
    Q_EMIT cleared();
}

void ConsoleView::setHeld(bool held) {
    m_isHeld = held;
    if (!held) {
        const QScopedValueRollback following(m_isFollowing, true);
        m_isScrolledUp = false;
        m_hasMore = false;
        placeCaret();
        goToEnd();
    }
    tellHold();
}

void ConsoleView::noteScrolling() {
    if (m_isFollowing)
        return;
    const bool up = verticalScrollBar()->value() < verticalScrollBar()->maximum();
    if (std::exchange(m_isScrolledUp, up) == up)
        return;
    if (!isHeld())
        m_hasMore = false;
    tellHold();
}

void ConsoleView::tellHold() {
    Q_EMIT holdChanged(isHeld(), viewStands() && m_hasMore);
}

void ConsoleView::showFound(const QTextCursor& found) {
    setTextCursor(found);
    centerCursor();
    noteScrolling();
}

/// Handles the keys that belong to the view even while keys go to the board.
bool ConsoleView::handleViewKey(const QKeyEvent& event) {
    const Qt::KeyboardModifiers modifiers = event.modifiers() & ~Qt::KeypadModifier;
    const bool boards = keysGoToBoard();
    const bool isEnter = event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter;
    const auto find =
        boards ? Qt::ControlModifier | Qt::ShiftModifier : Qt::KeyboardModifiers(Qt::ControlModifier);
    if (event.key() == Qt::Key_ScrollLock) {
        setHeld(!isHeld());
    } else if (event.key() == Qt::Key_Escape && modifiers == Qt::NoModifier && m_stopPaste && m_stopPaste()) {
        return true;
    } else if (event.key() == Qt::Key_F && modifiers == find) {
        Q_EMIT findRequested();
    } else if (isHeld() && modifiers == Qt::NoModifier &&
               (event.key() == Qt::Key_End || (isEnter && !boards))) {
        setHeld(false);
    } else if (boards && modifiers == Qt::ShiftModifier &&
               (event.key() == Qt::Key_PageUp || event.key() == Qt::Key_PageDown)) {
        verticalScrollBar()->triggerAction(event.key() == Qt::Key_PageUp
                                               ? QAbstractSlider::SliderPageStepSub
                                               : QAbstractSlider::SliderPageStepAdd);
    } else {
        return false;
    }
    return true;
}

bool ConsoleView::event(QEvent* event) {
    if (event->type() == QEvent::ShortcutOverride) {
        // A key for the board or Alt+B must not become an access key or a shortcut of the window first.
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
    if (handleViewKey(*event))
        return;
    const QString characters = keysGoToBoard() ? typedText(*event) : QString();
    if (characters.isEmpty())
        return QPlainTextEdit::keyPressEvent(event);
    // A user who types wants to see the result, unless the view is held by the switch.
    if (m_isScrolledUp && !m_isHeld)
        setHeld(false);
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

void ConsoleView::mousePressEvent(QMouseEvent* event) {
    m_isPressed = event->buttons().testFlag(Qt::LeftButton);
    QPlainTextEdit::mousePressEvent(event);
}

void ConsoleView::mouseDoubleClickEvent(QMouseEvent* event) {
    m_isPressed = event->button() == Qt::LeftButton; // a drag word by word may follow
    QPlainTextEdit::mouseDoubleClickEvent(event);
}

void ConsoleView::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton)
        release();
    if (event->button() == Qt::MiddleButton && QGuiApplication::clipboard()->supportsSelection())
        paste(QClipboard::Selection);
    else
        QPlainTextEdit::mouseReleaseEvent(event);
}

/// Ends a selection, too, whose mouse release a box has taken.
void ConsoleView::focusOutEvent(QFocusEvent* event) {
    QPlainTextEdit::focusOutEvent(event);
    release();
}

void ConsoleView::release() {
    if (std::exchange(m_isPressed, false) && !isHeld())
        goToEnd();
}

void ConsoleView::resizeEvent(QResizeEvent* event) {
    {
        const QScopedValueRollback following(m_isFollowing, true);
        m_layout->setWidth(viewport()->width());
        // At another width the base class would lay out the whole text.
        QResizeEvent sameWidth(event->size(), {event->size().width(), event->oldSize().height()});
        QPlainTextEdit::resizeEvent(&sameWidth);
    }
    if (!viewStands())
        goToEnd();
}

void ConsoleView::contextMenuEvent(QContextMenuEvent* event) {
    auto* menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    QAction* copyAction = menu->addAction(QStringLiteral("&Copy"), this, &ConsoleView::copy);
    copyAction->setEnabled(textCursor().hasSelection());
    if (keysGoToBoard()) {
        QAction* pasteAction =
            menu->addAction(QStringLiteral("&Paste"), this, [this] { paste(QClipboard::Clipboard); });
        pasteAction->setEnabled(!QGuiApplication::clipboard()->text().isEmpty());
        if (m_pasteMenu != nullptr)
            menu->addMenu(m_pasteMenu);
    }
    QAction* selectAll = menu->addAction(QStringLiteral("Select &All"), this, &ConsoleView::selectAll);
    selectAll->setEnabled(!document()->isEmpty());
    menu->popup(event->globalPos()); // an operation goes on meanwhile
}

bool ConsoleView::focusNextPrevChild(bool next) {
    // Tab belongs to the board then; Shift+Tab leaves the console.
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
