#pragma once

#include <QComboBox>
#include <QHash>

#include <functional>
#include <memory>

namespace zrk {

class EventLoop;
class Timer;

/// `cmbComPort`: tells in an entry's tool tip what is behind it, looked up whenever it may be seen and every
/// second while the list is open, because adapters come and go. An entry that a screen reader or another tool
/// selects in the list is chosen, as a click on it would be.
class PortList : public QComboBox {
    Q_OBJECT

  public:
    explicit PortList(QWidget* parent = nullptr);
    ~PortList() override;

    /// What there is to tell about each port number; none for a port that is not there.
    using Descriptions = QHash<int, QString>;
    void setDescriptions(EventLoop& loop, std::function<Descriptions()> lookUp);

    void showPopup() override;

  protected:
    bool event(QEvent* event) override;

  private:
    void takeSelection();
    void refreshToolTips();
    void refreshWhileOpen();

    std::function<Descriptions()> m_lookUp;
    std::unique_ptr<Timer> m_whileOpen;
};

} // namespace zrk
