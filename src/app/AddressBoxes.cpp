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
    for (std::size_t slot = 0; slot < widgets.slots.size(); ++slot) {
        QLineEdit* box = widgets.slots[slot].txtStartAddress;
        box->installEventFilter(this);
        connect(box, &QLineEdit::textChanged, this, [this, slot] { m_isPending[slot] = true; });
    }
}

void AddressBoxes::commit() {
    const int focused = slotOf(QApplication::focusWidget());
    for (int slot = 0; slot < kSlotCount; ++slot) {
        if (slot == focused || m_isPending[static_cast<std::size_t>(slot)])
            enter(slot);
    }
}

void AddressBoxes::enter(int slot) {
    m_entry.txtStartAddress_Validate(slot);
    m_isPending[static_cast<std::size_t>(slot)] = false;
}

bool AddressBoxes::eventFilter(QObject* watched, QEvent* event) {
    const int slot = slotOf(watched);
    if (slot >= 0 && event->type() == QEvent::FocusOut && leavesForGood(*static_cast<QFocusEvent*>(event)))
        enter(slot);
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
