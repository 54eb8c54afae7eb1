#include "app/TypedText.h"
#include "app/terminal/ScreenView.h"
#include "app/terminal/TerminalPress.h"

#include <QGuiApplication>
#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QMenu>
#include <QScrollBar>

#include <utility>

namespace zrk {
namespace {

TerminalPress pressOf(const QKeyEvent& event) {
    return terminalPress(event.key(), event.modifiers(), event.text());
}

} // namespace

/// Returns true for keys that must not act as access keys or shortcuts of the window.
bool ScreenView::isTaken(const QKeyEvent& event) const {
    return isAltB(event) || editKey(event) != EditKey::None || (keysGoToBoard() && !pressOf(event).isEmpty());
}

bool ScreenView::event(QEvent* event) {
    if (event->type() == QEvent::ShortcutOverride && isTaken(*static_cast<QKeyEvent*>(event))) {
        event->accept();
        return true;
    }
    return QAbstractScrollArea::event(event);
}

/// Handles the keys that belong to the view even while keys go to the board.
bool ScreenView::handleViewKey(const QKeyEvent& event) {
    const Qt::KeyboardModifiers modifiers = event.modifiers() & ~Qt::KeypadModifier;
    const bool isPage = event.key() == Qt::Key_PageUp || event.key() == Qt::Key_PageDown;
    if (editKey(event) == EditKey::Copy) {
        copy();
    } else if (editKey(event) == EditKey::Paste) {
        paste(QClipboard::Clipboard);
    } else if (event.key() == Qt::Key_ScrollLock) {
        setHeld(!isHeld());
    } else if (event.key() == Qt::Key_Escape && modifiers == Qt::NoModifier && m_stopPaste && m_stopPaste()) {
        return true;
    } else if (isHeld() && event.key() == Qt::Key_End && modifiers == Qt::NoModifier) {
        setHeld(false);
    } else if (isPage && (modifiers == Qt::ShiftModifier || !keysGoToBoard())) {
        verticalScrollBar()->triggerAction(event.key() == Qt::Key_PageUp
                                               ? QAbstractSlider::SliderPageStepSub
                                               : QAbstractSlider::SliderPageStepAdd);
    } else {
        return false;
    }
    return true;
}

void ScreenView::keyPressEvent(QKeyEvent* event) {
    const Qt::KeyboardModifiers modifiers = event->modifiers();
    Q_EMIT keyDown(event->key(), modifiers.testFlag(Qt::AltModifier), modifiers.testFlag(Qt::ShiftModifier),
                   modifiers.testFlag(Qt::ControlModifier));
    if (isAltB(*event) || handleViewKey(*event))
        return;
    const TerminalPress press = keysGoToBoard() ? pressOf(*event) : TerminalPress{};
    if (press.isEmpty())
        return event->ignore();
    // Typing returns to the end, unless the view is held by the switch.
    if (m_isScrolledUp && !m_heldAt)
        setHeld(false);
    m_screen.type(press);
}

void ScreenView::inputMethodEvent(QInputMethodEvent* event) {
    TerminalPress press;
    press.text = event->commitString();
    if (keysGoToBoard() && !press.isEmpty())
        m_screen.type(press);
    event->accept();
}

QVariant ScreenView::inputMethodQuery(Qt::InputMethodQuery query) const {
    if (query == Qt::ImCursorRectangle)
        return cursorRect();
    if (query == Qt::ImEnabled)
        return true;
    return QAbstractScrollArea::inputMethodQuery(query);
}

void ScreenView::copy() const {
    if (!m_selection.isEmpty())
        QGuiApplication::clipboard()->setText(selectedText());
}

void ScreenView::selectAll() {
    m_selection.begin({m_screen.firstLine(), 0});
    m_selection.extend({endOfView() - 1, m_screen.size().columns});
    viewport()->update();
}

QString ScreenView::selectedText() const {
    return m_selection.text([this](qsizetype number) { return lineToShow(number); }, m_screen.size().columns);
}

void ScreenView::paste(QClipboard::Mode from) {
    if (const QString text = QGuiApplication::clipboard()->text(from); keysGoToBoard() && !text.isEmpty())
        Q_EMIT pasted(m_screen.pasted(text));
}

bool ScreenView::focusNextPrevChild(bool next) {
    // Tab belongs to the board then; Shift+Tab is the way out.
    if (next && keysGoToBoard())
        return false;
    return QAbstractScrollArea::focusNextPrevChild(next);
}

void ScreenView::focusInEvent(QFocusEvent* event) {
    QAbstractScrollArea::focusInEvent(event);
    updateCursor();
}

void ScreenView::focusOutEvent(QFocusEvent* event) {
    QAbstractScrollArea::focusOutEvent(event);
    endSelecting(); // where a box has taken the release
    updateCursor();
}

void ScreenView::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton)
        return;
    m_isSelecting = true;
    m_selection.begin(pointAt(event->pos()));
    viewport()->update();
}

void ScreenView::mouseDoubleClickEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton)
        return;
    const int half = m_painter.cell().width() / 2; // the cell that is clicked, not the nearest gap
    const ScreenPoint at = pointAt(event->pos() - QPoint(half, 0));
    m_selection.selectWord(lineToShow(at.line), at);
    viewport()->update();
}

void ScreenView::mouseMoveEvent(QMouseEvent* event) {
    if (!m_isSelecting)
        return;
    QScrollBar& bar = *verticalScrollBar();
    if (event->pos().y() < 0)
        bar.setValue(bar.value() - 1);
    else if (event->pos().y() >= viewport()->height())
        bar.setValue(bar.value() + 1);
    m_selection.extend(pointAt(event->pos()));
    viewport()->update();
}

void ScreenView::mouseReleaseEvent(QMouseEvent* event) {
    QClipboard& clipboard = *QGuiApplication::clipboard();
    if (event->button() == Qt::LeftButton && clipboard.supportsSelection() && !m_selection.isEmpty())
        clipboard.setText(selectedText(), QClipboard::Selection);
    else if (event->button() == Qt::MiddleButton && clipboard.supportsSelection())
        paste(QClipboard::Selection);
    if (event->button() == Qt::LeftButton)
        endSelecting();
}

/// The view follows the end again.
void ScreenView::endSelecting() {
    if (!std::exchange(m_isSelecting, false) || isHeld())
        return;
    fitBars();
    viewport()->update();
}

void ScreenView::contextMenuEvent(QContextMenuEvent* event) {
    auto* menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->addAction(QStringLiteral("&Copy"), this, &ScreenView::copy)->setEnabled(!m_selection.isEmpty());
    menu->addAction(QStringLiteral("Select &All"), this, &ScreenView::selectAll);
    QAction* small = menu->addAction(QStringLiteral("&Grid of 80 × 24"));
    small->setCheckable(true);
    small->setChecked(m_hasSmallGrid);
    connect(small, &QAction::toggled, this, [this](bool on) {
        setSmallGrid(on);
        Q_EMIT smallGridChosen(on);
    });
    if (keysGoToBoard()) {
        const QString clipboard = QGuiApplication::clipboard()->text();
        menu->addAction(QStringLiteral("&Paste"), this, [this] { paste(QClipboard::Clipboard); })
            ->setEnabled(!clipboard.isEmpty());
        if (m_pasteMenu != nullptr)
            menu->addMenu(m_pasteMenu);
        // A serial line does not carry the size, so programs on the board believe in 80 x 24.
        const QString command =
            QStringLiteral("stty rows %1 cols %2").arg(m_screen.size().rows).arg(m_screen.size().columns);
        menu->addAction(QStringLiteral("&Type \"%1\"").arg(command), this, [this, command] {
            if (keysGoToBoard())
                Q_EMIT typed(command.toLatin1() + '\r');
        });
    }
    menu->popup(event->globalPos()); // an operation goes on meanwhile
}

} // namespace zrk
