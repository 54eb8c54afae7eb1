#pragma once

#include <QWidget>

class QGroupBox;
class QHBoxLayout;

namespace zrk {

/// A row of controls in the title's line of a group box, at its right end, where they take no height.
class TitleRow : public QWidget {
    Q_OBJECT

  public:
    /// `insideRight` is the distance to the box's right edge in pixels.
    TitleRow(QGroupBox* box, int insideRight);

    void addWidget(QWidget* widget);

  protected:
    bool event(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void place();

    QGroupBox* m_box;
    QHBoxLayout* m_row;
    int m_insideRight;
};

/// Returns what a layout in the box must keep free at its top for the row.
[[nodiscard]] int roomFor(const TitleRow& row, const QGroupBox& box);

} // namespace zrk
