#pragma once

#include <QComboBox>
#include <QHash>

#include <functional>
#include <memory>

namespace zrk {

class EventLoop;
class Timer;

/// `cmbComPort`: the open list shows the device beside each entry, greyed if there is none, and the tool tip
/// shows more. It looks them up before it is shown and every second while the list is open, because adapters
/// come and go. An entry that a screen reader or another tool selects in the list is chosen, as by a click.
class PortList : public QComboBox {
    Q_OBJECT

  public:
    explicit PortList(QWidget* parent = nullptr);
    ~PortList() override;

    /// The texts about a port.
    struct Description {
        QString device; ///< beside its number in the open list
        QString toolTip;
        bool isThere = true;
    };
    /// The descriptions by port number; none for a number without a device.
    using Descriptions = QHash<int, Description>;
    void setDescriptions(EventLoop& loop, std::function<Descriptions()> lookUp);

    void showPopup() override;

  protected:
    bool event(QEvent* event) override;
    /// Goes to what scrolls: a turn of the wheel over the closed list must not choose another port.
    void wheelEvent(QWheelEvent* event) override;

  private:
    void takeSelection();
    void refresh();
    void refreshWhileOpen();

    std::function<Descriptions()> m_lookUp;
    std::unique_ptr<Timer> m_whileOpen;
};

} // namespace zrk
