#pragma once

#include <QComboBox>
#include <QHash>

#include <functional>
#include <memory>

namespace zrk {

class EventLoop;
class Timer;

/// `cmbComPort`: shows beside each entry of the open list the device behind it, greyed where there is none,
/// and tells more in the tool tip. That is looked up whenever it may be seen and every second while the list
/// is open, because adapters come and go. An entry that a screen reader or another tool selects in the list
/// is chosen, as a click on it would be.
class PortList : public QComboBox {
    Q_OBJECT

  public:
    explicit PortList(QWidget* parent = nullptr);
    ~PortList() override;

    /// What there is to tell about a port.
    struct Description {
        QString device;
        QString toolTip;
        bool isThere = true;
    };
    /// By port number; none for one that stands for no device.
    using Descriptions = QHash<int, Description>;
    void setDescriptions(EventLoop& loop, std::function<Descriptions()> lookUp);

    void showPopup() override;

  protected:
    bool event(QEvent* event) override;

  private:
    void takeSelection();
    void refresh();
    void refreshWhileOpen();

    std::function<Descriptions()> m_lookUp;
    std::unique_ptr<Timer> m_whileOpen;
};

} // namespace zrk
