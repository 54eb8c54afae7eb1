#pragma once

#include <QWidget>

namespace zrk {

struct LoaderWidgets;

/// The inside of the main window: the controls at their place at the top left, the console below them.
/// Placed once; afterwards only the console's size changes, from outside.
class LoaderForm : public QWidget {
    Q_OBJECT

  public:
    /// Builds the widgets, still without their captions.
    LoaderForm(LoaderWidgets& widgets, QWidget* parent);

    /// Gives everything its designed place, by the sizes that fonts, scale and captions need. On a screen
    /// that is wider than they are, the names of the files get more room.
    void placeControls(const LoaderWidgets& widgets, QSize screen);

    /// Returns the designed size.
    [[nodiscard]] QSize sizeHint() const override { return m_designSize; }

  private:
    void settle();

    QWidget* m_controls;
    QSize m_designSize;
};

} // namespace zrk
