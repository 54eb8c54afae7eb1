#pragma once

#include "app/ConsoleDisplay.h"

#include <QClipboard>
#include <QPlainTextEdit>

#include <functional>

namespace zrk {

class ConsoleLayout;

/// `txtStatus`: shows the console's text and takes the keyboard. Typing never changes the text.
///
/// In terminal mode all keys go to the board, Tab and Ctrl+C included; Shift+Tab leaves the console. Copying
/// is then Ctrl+Shift+C or Ctrl+Insert, pasting Ctrl+Shift+V, Shift+Insert or the middle button.
class ConsoleView : public QPlainTextEdit {
    Q_OBJECT

  public:
    explicit ConsoleView(QWidget* parent = nullptr);

    /// Sets the predicate that decides whether keys go to the board at this moment.
    void setKeysGoToBoard(std::function<bool()> predicate) { m_keysGoToBoard = std::move(predicate); }

    /// Sets what Escape stops: returns false when no paste is under way, and the key is one for the board.
    void setStopPaste(std::function<bool()> stop) { m_stopPaste = std::move(stop); }

    /// Sets a menu that the context menu shows below "Paste".
    void setPasteMenu(QMenu* menu) { m_pasteMenu = menu; }

    /// Shows the console's text after an edit: `removed` characters at its end were removed, then the last
    /// `added` ones of `text` were added. The end stays in sight unless the view is held; a selection keeps
    /// its text, as far as that was not removed, and does not grow.
    void follow(const QString& text, qsizetype removed, qsizetype added);

    /// Lets edits wait, in batches, while the view is hidden, since each costs a layout; or shows those of
    /// `text` that have waited.
    void setAsleep(bool asleep, const QString& text);

    /// Shows this text instead of the present one.
    void showAnew(const QString& text);

    /// Empties the view; later text is shown.
    void clearView();

    /// Freezes the view, or lets it go to the end and follow it again. The user also freezes it by scrolling
    /// up. End then leads back and is not sent to the board; so does Enter while no keys go to the board.
    void setHeld(bool held);
    [[nodiscard]] bool isHeld() const { return m_isHeld || m_isScrolledUp; }

    /// Selects a text of the document and scrolls to it, which holds the view.
    void showFound(const QTextCursor& found);

  Q_SIGNALS:
    /// Reports a pressed key before anything else handles it, including access keys of the window.
    void keyDown(int key, bool alt, bool shift, bool control);
    /// Reports a character for the board, code 0 to 255.
    void typed(int character);
    void pasted(const QString& text);
    /// Reports that another program wrote into the text shown, which must be shown again.
    void overwritten();
    /// Reports that the view is held or follows the end again; `more`: there is new text below.
    void holdChanged(bool held, bool more);
    /// Reports that the view was emptied.
    void cleared();
    /// Reports Ctrl+F, or Ctrl+Shift+F if Ctrl+F goes to the board.
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
    void showEdit(const QString& text, qsizetype removed, qsizetype added);
    int write(const ConsoleDisplay::Edit& edit);
    void select(int anchor, int position);
    void goToEnd();
    void placeCaret();
    void release();
    void noteScrolling();
    void tellHold();

    ConsoleDisplay m_display;
    ConsoleLayout* m_layout = nullptr; ///< of the present document
    bool m_isFollowing = false;        ///< the change is our own
    bool m_isAsleep = false;
    qsizetype m_removedAsleep = 0; ///< characters of the text shown
    qsizetype m_addedAsleep = 0;
    bool m_isHeld = false;       ///< by the switch
    bool m_isScrolledUp = false; ///< by the user
    bool m_isPressed = false;    ///< the mouse button that selects is down in the text
    bool m_hasMore = false;      ///< text has come since
    std::function<bool()> m_keysGoToBoard;
    std::function<bool()> m_stopPaste;
    QMenu* m_pasteMenu = nullptr;
};

/// Returns Courier New at 8.25 points if it is installed, else the system's fixed-pitch font, with our own
/// font for the signs of control characters.
[[nodiscard]] QFont consoleFont();

} // namespace zrk
