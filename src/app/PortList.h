#pragma once

#include <QComboBox>

#include <functional>

namespace zrk {

/// `cmbComPort`: shows the device behind an entry as its tool tip, looked up whenever it may be seen,
/// because adapters come and go. An entry that a screen reader or another tool selects in the list is
/// chosen, as a click on it would be.
class PortList : public QComboBox {
    Q_OBJECT

  public:
    explicit PortList(QWidget* parent = nullptr);

    /// Tells the device behind a port number ("" when there is none).
    void setDeviceNames(std::function<QString(int number)> lookUp) { m_lookUp = std::move(lookUp); }

    void showPopup() override;

  protected:
    bool event(QEvent* event) override;

  private:
    void takeSelection();
    void refreshToolTips();
    [[nodiscard]] QString toolTipOf(int index) const;

    std::function<QString(int number)> m_lookUp;
};

} // namespace zrk
