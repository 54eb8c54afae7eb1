#pragma once

#include "app/TitleRow.h"

#include <functional>

class QAbstractScrollArea;
class QAction;
class QLabel;
class QLineEdit;
class QToolButton;

namespace zrk {

class ConsoleSearch;
class ConsoleView;
class ScreenView;

/// The two views of the console, one of which is shown.
struct ConsoleViews {
    ConsoleView* text;
    ScreenView* screen;
};

/// The row of tools in the title line of the console's frame: Screen, Hold, Find, Clear, Save. They act on the
/// view that is shown. Find, which only the text view has, unfolds a box beside them. A mark in the view's
/// corner shows that a held view has more below.
class ConsoleTools final : public TitleRow {
    Q_OBJECT

  public:
    /// Puts the row into `frame`; `save` writes the console into a file of the user's choice.
    ConsoleTools(ConsoleViews views, QGroupBox* frame, std::function<void()> save);

    /// Gives the first button of the row the entry that switches between the views.
    void addScreenEntry(QAction* entry);

    /// Adapts the row to the view that is shown now.
    void followShownView();

    /// Returns the widgets in the order of the Tab key.
    [[nodiscard]] QList<QWidget*> tabOrder() const;

    [[nodiscard]] QToolButton* saveButton() const { return m_save; }

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void fillRow();
    void connectViews();
    [[nodiscard]] bool isScreen() const;
    [[nodiscard]] QAbstractScrollArea* shownView() const;
    void setHeld(bool held);
    void clear();
    [[nodiscard]] QToolButton* addButton(const char* name, const QString& text, const QString& toolTip);
    void showHold();
    void openFind();
    void closeFind();
    void placeMark();

    struct Hold {
        bool isHeld = false;
        bool hasMore = false;
    };

    ConsoleViews m_views;
    Hold m_textHold;
    Hold m_screenHold;
    QGroupBox* m_frame;
    ConsoleSearch* m_search;
    QLabel* m_findState;
    QLineEdit* m_txtFind;
    QToolButton* m_screen = nullptr;
    QToolButton* m_hold = nullptr;
    QToolButton* m_find = nullptr;
    QToolButton* m_clear = nullptr;
    QToolButton* m_save = nullptr;
    QToolButton* m_more = nullptr;
};

} // namespace zrk
