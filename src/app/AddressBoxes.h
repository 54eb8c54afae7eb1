#pragma once

#include "controls/SlotTable.h"

#include <QObject>

#include <array>

namespace zrk {

class AddressEntry;
struct LoaderWidgets;

/// The entry rule of the address boxes: runs when the focus leaves a box and on Enter, which has no
/// further effect.
class AddressBoxes : public QObject {
    Q_OBJECT

  public:
    AddressBoxes(const LoaderWidgets& widgets, AddressEntry& entry, QObject* parent);

    /// Runs the rule for the box that has the focus and for those whose text was set and not entered yet.
    /// Access keys and menu entries act without moving the focus, and an assistive tool sets a text without
    /// giving it, yet every action must use the entered address.
    void commit();

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void enter(int slot);
    [[nodiscard]] int slotOf(const QObject* box) const;

    const LoaderWidgets& m_widgets;
    AddressEntry& m_entry;
    std::array<bool, kSlotCount> m_isPending{}; ///< by slot: set and not entered yet
};

} // namespace zrk
