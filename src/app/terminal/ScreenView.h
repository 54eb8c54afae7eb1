#pragma once

#include "app/terminal/ScreenPainter.h"
#include "app/terminal/ScreenSelection.h"
#include "app/terminal/TerminalScreen.h"

#include <QAbstractScrollArea>
#include <QClipboard>

#include <functional>
#include <optional>

namespace zrk {

/// Shows a terminal's screen and the lines above it, and takes the keyboard. The grid is as large as the
/// view, but 80 x 24 at least; programs that do not learn the size assume that, so it can be kept there.
///
/// While keys go to the board, the view keeps only these: Shift+Page Up and Down, Scroll Lock,
/// Ctrl+Shift+C and V, Ctrl+Insert, Shift+Insert, and Shift+Tab, which leaves it.
class ScreenView : public QAbstractScrollArea {
    Q_OBJECT

  public:
    explicit ScreenView(QWidget* parent = nullptr);

    /// Decides whether keys go to the board at this moment.
    void setKeysGoToBoard(std::function<bool()> predicate) { m_keysGoToBoard = std::move(predicate); }

    /// Sets what Escape stops: returns false when no paste is under way, and the key is one for the board.
    void setStopPaste(std::function<bool()> stop) { m_stopPaste = std::move(stop); }

    /// Sets a menu that the context menu shows below "Paste".
    void setPasteMenu(QMenu* menu) { m_pasteMenu = menu; }

    [[nodiscard]] TerminalScreen& screen() { return m_screen; }

    /// Forgets all that was shown.
    void reset();

    /// Shows what has changed on the screen.
    void showChanges();

    /// Freezes the view, or lets it go to the end and follow it again. Scrolling up holds it, too.
    void setHeld(bool held);
    [[nodiscard]] bool isHeld() const { return m_heldAt.has_value() || m_isScrolledUp; }

    /// Keeps the grid at 80 x 24, or lets it fit the view.
    void setSmallGrid(bool on);

    void copy() const;
    void selectAll();

  Q_SIGNALS:
    /// Reports a pressed key, before anything else is done with it.
    void keyDown(int key, bool alt, bool shift, bool control);
    /// Reports bytes for the board: keys, and answers to its questions.
    void typed(const QByteArray& bytes);
    /// Reports a text to paste, as these bytes.
    void pasted(const QByteArray& bytes);
    /// The view is held, or follows the end again; `more`: there is something new below.
    void holdChanged(bool held, bool more);
    void smallGridChosen(bool on);

  protected:
    bool event(QEvent* event) override;
    void changeEvent(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void scrollContentsBy(int dx, int dy) override;
    void keyPressEvent(QKeyEvent* event) override;
    void inputMethodEvent(QInputMethodEvent* event) override;
    [[nodiscard]] QVariant inputMethodQuery(Qt::InputMethodQuery query) const override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    bool focusNextPrevChild(bool next) override;

  private:
    /// The view as it was when it was stopped.
    struct Stop {
        qsizetype gridTop = 0;
        std::vector<ScreenLine> grid;
    };

    [[nodiscard]] bool keysGoToBoard() const { return m_keysGoToBoard && m_keysGoToBoard(); }
    [[nodiscard]] bool handleViewKey(const QKeyEvent& event);
    [[nodiscard]] bool isTaken(const QKeyEvent& event) const;
    void paste(QClipboard::Mode from);
    void fitGrid();
    void fitBars();
    [[nodiscard]] int rowsInView() const;
    [[nodiscard]] qsizetype topLine() const;
    [[nodiscard]] int endValue() const;
    [[nodiscard]] qsizetype endOfView() const;
    [[nodiscard]] ScreenLine lineToShow(qsizetype number) const;
    [[nodiscard]] bool stands() const { return m_isScrolledUp || m_isSelecting; }
    [[nodiscard]] QString selectedText() const;
    [[nodiscard]] ScreenPoint pointAt(QPoint position) const;
    [[nodiscard]] QPoint origin() const;
    [[nodiscard]] QRect cursorRect() const;
    void updateRows(int firstRow, int endRow);
    void updateCursor();
    void endSelecting();
    void tellHold();

    TerminalScreen m_screen;
    ScreenPainter m_painter;
    ScreenSelection m_selection;
    std::function<bool()> m_keysGoToBoard;
    std::function<bool()> m_stopPaste;
    QMenu* m_pasteMenu = nullptr;
    std::optional<Stop> m_heldAt;
    qsizetype m_firstLine = 0; ///< of the screen, when the bars were fitted
    bool m_hasSmallGrid = false;
    bool m_isFitting = false; ///< the bars move by our own doing
    bool m_isScrolledUp = false;
    bool m_isSelecting = false;
    bool m_hasMore = false;
};

} // namespace zrk
