#include "app/PortList.h"

#include <QEvent>

namespace zrk {

PortList::PortList(QWidget* parent) : QComboBox(parent) {}

void PortList::showPopup() {
    refreshToolTips();
    QComboBox::showPopup();
}

bool PortList::event(QEvent* event) {
    if (event->type() == QEvent::ToolTip)
        refreshToolTips();
    return QComboBox::event(event);
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
