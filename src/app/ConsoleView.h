#pragma once

#include "app/ConsoleDisplay.h"

#include <QClipboard>
#include <QPlainTextEdit>

#include <functional>

namespace zrk {

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

    /// The text became `text`; `removed` characters at its end gave way to its last `added` ones.
    /// View and caret go to the end.
    void follow(const QString& text, qsizetype removed, qsizetype added);

  Q_SIGNALS:
    /// A key went down, before anything else is done with it; an access key of the window comes here too.
    void keyDown(int key, bool alt, bool shift, bool control);
    /// A character for the board, code 0 to 255.
    void typed(int character);
    void pasted(const QString& text);
    /// Something else wrote into the text shown, which is to be shown anew.
    void overwritten();

  protected:
    bool event(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void inputMethodEvent(QInputMethodEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    bool focusNextPrevChild(bool next) override;
    [[nodiscard]] QMimeData* createMimeDataFromSelection() const override;

  private:
    void type(const QString& characters);
    void paste(QClipboard::Mode from);
    [[nodiscard]] bool keysGoToBoard() const { return m_keysGoToBoard && m_keysGoToBoard(); }

    ConsoleDisplay m_display;
    bool m_isFollowing = false;
    std::function<bool()> m_keysGoToBoard;
};

/// Courier New at 8.25 points where it is installed, else the system's fixed-pitch font; with it comes a
/// font of our own for the signs that stand for control characters.
[[nodiscard]] QFont consoleFont();

} // namespace zrk
