#pragma once

#include <QLineEdit>

class QLabel;
class QStyleOptionFrame;

namespace zrk {

/// Shows the name of a slot's file. One that is too long for its room is shown without its middle, since
/// versions stand at the end, and is whole below the tool tip, which tells the folder; that a file cannot be
/// found is shown in any case, in the warning colour.
class FileNameEdit final : public QLineEdit {
    Q_OBJECT

  public:
    explicit FileNameEdit(QWidget* parent);

    /// Keeps the mark at the right end inside the field, beside the text, while it is not hidden.
    void setMark(QLabel* mark);

    /// True for a text that tells of a file that cannot be found.
    [[nodiscard]] static bool tellsOfMissing(const QString& text);

    /// Colours such a text.
    void setMissing(bool missing);

    /// The text as it fits into so many pixels.
    [[nodiscard]] QString fitted(int width) const;

  protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void changeEvent(QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    [[nodiscard]] QRect textRoom(QStyleOptionFrame& frame) const;
    void colour();
    void placeMark();

    QLabel* m_mark = nullptr;
    bool m_isMissing = false;
};

} // namespace zrk
