#pragma once

#include "app/ConsoleDisplay.h"

#include <QClipboard>
#include <QPlainTextEdit>

#include <functional>

namespace zrk {

class ConsoleLayout;

/// `txtStatus`: shows the console's text and takes the keyboard. What is typed never changes the text.
///
/// While keys go to the board all of them do, Tab and Ctrl+C included; Shift+Tab leaves the console.
/// Copying is then Ctrl+Shift+C or Ctrl+Insert, pasting Ctrl+Shift+V, Shift+Insert or the middle button.
class ConsoleView : public QPlainTextEdit {
    Q_OBJECT

  public:
    explicit ConsoleView(QWidget* parent = nullptr);

    /// Tells whether keys go to the board at this moment.
    void setKeysGoToBoard(std::function<bool()> predicate) { m_keysGoToBoard = std::move(predicate); }

    /// Shows the console's text after an edit: `removed` characters at its end went away, then the last
    /// `added` ones of `text` came. The end stays in sight unless the view is held; a selection keeps its
    /// text, as far as that was not removed, and does not grow.
    void follow(const QString& text, qsizetype removed, qsizetype added);

    /// Shows this text in place of what was there.
    void showAnew(const QString& text);

    /// Takes what is shown away; what comes later is shown.
    void clearView();

    /// Freezes the view, or lets it go to the end and follow it again. The user freezes it, too, by scrolling
    /// up. End then leads back and is not sent to the board; so does Enter while no keys go to the board.
    void setHeld(bool held);
    [[nodiscard]] bool isHeld() const { return m_isHeld || m_isScrolledUp; }

    /// Selects a text of the document and brings it into sight, which holds the view.
    void showFound(const QTextCursor& found);

  Q_SIGNALS:
    /// A key went down, before anything else is done with it; an access key of the window comes here too.
    void keyDown(int key, bool alt, bool shift, bool control);
    /// A character for the board, code 0 to 255.
    void typed(int character);
    void pasted(const QString& text);
    /// Something else wrote into the text shown, which is to be shown anew.
    void overwritten();
    /// The view is held, or follows the end again; `more`: there is new text below what is held.
    void holdChanged(bool held, bool more);
    /// What was shown is gone.
    void cleared();
    /// Ctrl+F, or Ctrl+Shift+F where Ctrl+F goes to the board.
    void findRequested();

  protected:
    bool event(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void inputMethodEvent(QInputMethodEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    bool focusNextPrevChild(bool next) override;
    [[nodiscard]] QMimeData* createMimeDataFromSelection() const override;

  private:
    void beginDocument();
    void type(const QString& characters);
    void paste(QClipboard::Mode from);
    [[nodiscard]] bool keysGoToBoard() const { return m_keysGoToBoard && m_keysGoToBoard(); }
    [[nodiscard]] bool viewStands() const { return isHeld() || m_isPressed; }
    [[nodiscard]] bool handleViewKey(const QKeyEvent& event);
    int write(const ConsoleDisplay::Edit& edit);
    void select(int anchor, int position);
    void goToEnd();
    void placeCaret();
    void release();
    void noteScrolling();
    void tellHold();

    ConsoleDisplay m_display;
    ConsoleLayout* m_layout = nullptr; ///< of the present document
    bool m_isFollowing = false;        ///< what changes is our own doing
    bool m_isHeld = false;             ///< by the switch
    bool m_isScrolledUp = false;       ///< by the user
    bool m_isPressed = false;          ///< the mouse button that selects is down in the text
    bool m_hasMore = false;            ///< text has come since
    std::function<bool()> m_keysGoToBoard;
};

/// Courier New at 8.25 points where it is installed, else the system's fixed-pitch font; with it comes a
/// font of our own for the signs that stand for control characters.
[[nodiscard]] QFont consoleFont();

} // namespace zrk
