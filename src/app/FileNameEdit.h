#pragma once

#include <QLineEdit>

class QLabel;
class QStyleOptionFrame;

namespace zrk {

/// The field for the name of a slot's file. A name that is too long is shown without its middle, since
/// versions are at the end, and whole in the tool tip, below the folder; a missing file is always shown, in
/// the warning colour.
class FileNameEdit final : public QLineEdit {
    Q_OBJECT

  public:
    explicit FileNameEdit(QWidget* parent);

    /// Keeps the mark at the right end inside the field, beside the text, while it is not hidden.
    void setMark(QLabel* mark);

    /// Returns whether a text says that a file cannot be found.
    [[nodiscard]] static bool tellsOfMissing(const QString& text);

    /// Colours such a text.
    void setMissing(bool missing);

    /// Returns the text as it fits into so many pixels.
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
