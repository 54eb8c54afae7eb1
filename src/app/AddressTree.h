#pragma once

#include <QTreeWidget>

namespace zrk {

/// `lvwAdrs`: its columns are as wide as their contents in the present font. Without enough room, as on a
/// small screen, it uses a smaller font: no number is ever cut.
class AddressTree final : public QTreeWidget {
  public:
    explicit AddressTree(QWidget* parent);

    /// Fits the columns again after the rows have changed.
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
