#pragma once

#include <QObject>

namespace zrk {

class AddressEntry;
struct LoaderWidgets;

/// The entry rule of the address boxes: runs when the focus leaves a box and on Enter, which has no
/// further effect.
class AddressBoxes : public QObject {
    Q_OBJECT

  public:
    AddressBoxes(const LoaderWidgets& widgets, AddressEntry& entry, QObject* parent);

    /// Runs the rule for the box that has the focus. Access keys and menu entries act without taking the
    /// focus away, yet must see the entered address.
    void commit();

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    [[nodiscard]] int slotOf(const QObject* box) const;

    const LoaderWidgets& m_widgets;
    AddressEntry& m_entry;
};

} // namespace zrk
