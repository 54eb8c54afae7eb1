#include "app/AddressBoxes.h"

#include "app/LoaderWidgets.h"
#include "config/AddressEntry.h"

#include <QApplication>
#include <QKeyEvent>
#include <QLineEdit>

namespace zrk {
namespace {

constexpr int kEnter = 13;

bool leavesForGood(const QFocusEvent& event) {
    return event.reason() != Qt::ActiveWindowFocusReason && event.reason() != Qt::PopupFocusReason;
}

} // namespace

AddressBoxes::AddressBoxes(const LoaderWidgets& widgets, AddressEntry& entry, QObject* parent)
    : QObject(parent), m_widgets(widgets), m_entry(entry) {
    for (const SlotWidgets& row : widgets.slots)
        row.txtStartAddress->installEventFilter(this);
}

void AddressBoxes::commit() {
    const int slot = slotOf(QApplication::focusWidget());
    if (slot >= 0)
        m_entry.txtStartAddress_Validate(slot);
}

bool AddressBoxes::eventFilter(QObject* watched, QEvent* event) {
    const int slot = slotOf(watched);
    if (slot >= 0 && event->type() == QEvent::FocusOut && leavesForGood(*static_cast<QFocusEvent*>(event)))
        m_entry.txtStartAddress_Validate(slot);
    if (slot >= 0 && event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent*>(event)->key();
        if (key == Qt::Key_Return || key == Qt::Key_Enter)
            return m_entry.txtStartAddress_KeyPress(slot, kEnter) == 0;
    }
    return QObject::eventFilter(watched, event);
}

int AddressBoxes::slotOf(const QObject* box) const {
    for (int slot = 0; slot < kSlotCount; ++slot) {
        if (box != nullptr && m_widgets.slots[static_cast<std::size_t>(slot)].txtStartAddress == box)
            return slot;
    }
    return -1;
}

} // namespace zrk
