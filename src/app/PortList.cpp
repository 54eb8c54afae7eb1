#include "app/PortList.h"

#include <QAbstractItemView>
#include <QEvent>
#include <QItemSelectionModel>

namespace zrk {

PortList::PortList(QWidget* parent) : QComboBox(parent) {
    // Later, because the keyboard and the mouse change the selection first and then the current entry.
    connect(view()->selectionModel(), &QItemSelectionModel::selectionChanged, this, &PortList::takeSelection,
            Qt::QueuedConnection);
}

void PortList::showPopup() {
    refreshToolTips();
    QComboBox::showPopup();
}

bool PortList::event(QEvent* event) {
    if (event->type() == QEvent::ToolTip)
        refreshToolTips();
    return QComboBox::event(event);
}

void PortList::takeSelection() {
    const QModelIndexList selected = view()->selectionModel()->selectedRows();
    if (selected.size() != 1 || selected.first() == view()->currentIndex())
        return; // the user goes through the open list and has not chosen yet
    hidePopup();
    setCurrentIndex(selected.first().row());
}

void PortList::refreshToolTips() {
    for (int i = 0; i < count(); ++i)
        setItemData(i, toolTipOf(i), Qt::ToolTipRole);
    setToolTip(toolTipOf(currentIndex()));
}

QString PortList::toolTipOf(int index) const {
    if (index < 0 || !m_lookUp)
        return {};
    const QString device = m_lookUp(itemData(index).toInt());
    return device.isEmpty() ? QStringLiteral("There is no such port on this machine.") : device;
}

} // namespace zrk
