#pragma once

#include <QWidget>

class QGroupBox;
class QHBoxLayout;

namespace zrk {

/// Controls in the title's line of a group box, at its right end, where they take no height.
class TitleRow : public QWidget {
    Q_OBJECT

  public:
    /// `insideRight`: the distance to the box's right edge in pixels.
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

/// What a layout in the box keeps free at its top for the row.
[[nodiscard]] int roomFor(const TitleRow& row, const QGroupBox& box);

} // namespace zrk
