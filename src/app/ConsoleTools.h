#pragma once

#include "app/TitleRow.h"

#include <functional>

class QLabel;
class QLineEdit;
class QToolButton;

namespace zrk {

class ConsoleSearch;
class ConsoleView;

/// The row of tools in the title line of the console's frame: Hold, Find, Clear, Save. Find unfolds a box
/// beside them. A mark in the console's corner shows that a held view has more text below.
class ConsoleTools final : public TitleRow {
    Q_OBJECT

  public:
    /// Puts the row into `frame`; `save` writes the console into a file of the user's choice.
    ConsoleTools(ConsoleView* view, QGroupBox* frame, std::function<void()> save);

    /// Returns the widgets in the order of the Tab key.
    [[nodiscard]] QList<QWidget*> tabOrder() const;

    [[nodiscard]] QToolButton* saveButton() const { return m_save; }

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    [[nodiscard]] QToolButton* addButton(const char* name, const QString& text, const QString& toolTip);
    void showHold(bool held, bool more);
    void openFind();
    void closeFind();
    void placeMark();

    ConsoleView* m_view;
    ConsoleSearch* m_search;
    QLabel* m_findState;
    QLineEdit* m_txtFind;
    QToolButton* m_hold;
    QToolButton* m_find;
    QToolButton* m_clear;
    QToolButton* m_save;
    QToolButton* m_more;
};

} // namespace zrk
