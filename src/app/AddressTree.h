#pragma once

#include <QTreeWidget>

namespace zrk {

/// `lvwAdrs`: its columns are as wide as what they hold in the font in force. Where the room is too narrow
/// for that, such as on a small screen, it has a smaller font: no number is ever cut.
class AddressTree final : public QTreeWidget {
  public:
    explicit AddressTree(QWidget* parent);

    /// To be called when the rows have changed.
    void fitColumns();

  protected:
    void changeEvent(QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

  private:
    [[nodiscard]] QSize usualSize() const;
    [[nodiscard]] bool columnsFit();

    bool m_isFitting = false;
};

} // namespace zrk
