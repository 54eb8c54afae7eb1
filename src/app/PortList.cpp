#include "app/PortList.h"

#include "app/PlainToolTip.h"
#include "platform/EventLoop.h"

#include <QAbstractItemView>
#include <QEvent>
#include <QItemSelectionModel>
#include <QToolTip>

namespace zrk {
namespace {

constexpr std::chrono::milliseconds kRefreshInterval{1000};

} // namespace

PortList::PortList(QWidget* parent) : QComboBox(parent) {
    // Later, because the keyboard and the mouse change the selection first and then the current entry.
    connect(view()->selectionModel(), &QItemSelectionModel::selectionChanged, this, &PortList::takeSelection,
            Qt::QueuedConnection);
}

PortList::~PortList() = default;

void PortList::setDescriptions(EventLoop& loop, std::function<Descriptions()> lookUp) {
    m_lookUp = std::move(lookUp);
    m_whileOpen = loop.createTimer([this] { refreshWhileOpen(); });
}

void PortList::showPopup() {
    refreshToolTips();
    QComboBox::showPopup();
    if (m_whileOpen)
        m_whileOpen->start(kRefreshInterval);
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
    if (!m_lookUp)
        return;
    const Descriptions all = m_lookUp();
    for (int i = 0; i < count(); ++i)
        setItemData(i,
                    plainToolTip(all.value(itemData(i).toInt(),
                                           QStringLiteral("There is no such port on this machine."))),
                    Qt::ToolTipRole);
    setToolTip(currentData(Qt::ToolTipRole).toString());
}

void PortList::refreshWhileOpen() {
    if (!view()->isVisible())
        return m_whileOpen->stop();
    refreshToolTips();
    // A tool tip that is being read follows, too.
    const QPoint mouse = QCursor::pos();
    const QModelIndex entry = view()->indexAt(view()->viewport()->mapFromGlobal(mouse));
    if (QToolTip::isVisible() && entry.isValid())
        QToolTip::showText(mouse, entry.data(Qt::ToolTipRole).toString(), view()->viewport());
}

} // namespace zrk
