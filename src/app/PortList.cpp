#include "app/PortList.h"

#include "app/PlainToolTip.h"
#include "platform/EventLoop.h"

#include <QAbstractItemView>
#include <QEvent>
#include <QItemSelectionModel>
#include <QStyledItemDelegate>
#include <QToolTip>
#include <QWheelEvent>

namespace zrk {
namespace {

constexpr std::chrono::milliseconds kRefreshInterval{1000};
constexpr int kDeviceRole = Qt::AccessibleDescriptionRole; // a screen reader reads it after the text
constexpr int kIsThereRole = Qt::UserRole + 1;             // after the role of an entry's own data

/// Paints an entry of the open list with its device; its text is the port's name alone.
class EntryDelegate final : public QStyledItemDelegate {
  public:
    using QStyledItemDelegate::QStyledItemDelegate;

  protected:
    void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override {
        QStyledItemDelegate::initStyleOption(option, index);
        option->text += QStringLiteral("   ") + index.data(kDeviceRole).toString();
        if (!index.data(kIsThereRole).toBool()) {
            const QPalette& palette = option->palette;
            option->palette.setColor(QPalette::Text, palette.color(QPalette::Disabled, QPalette::Text));
        }
    }
};

} // namespace

PortList::PortList(QWidget* parent) : QComboBox(parent) {
    setItemDelegate(new EntryDelegate(this));
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
    refresh();
    const int frame = view()->width() - view()->viewport()->width();
    view()->setMinimumWidth(view()->sizeHintForColumn(0) + frame);
    QComboBox::showPopup();
    if (m_whileOpen)
        m_whileOpen->start(kRefreshInterval);
}

bool PortList::event(QEvent* event) {
    if (event->type() == QEvent::ToolTip)
        refresh();
    return QComboBox::event(event);
}

void PortList::wheelEvent(QWheelEvent* event) {
    event->ignore();
}

void PortList::takeSelection() {
    const QModelIndexList selected = view()->selectionModel()->selectedRows();
    if (selected.size() != 1 || selected.first() == view()->currentIndex())
        return; // the user moves within the open list and has not chosen yet
    hidePopup();
    setCurrentIndex(selected.first().row());
}

void PortList::refresh() {
    if (!m_lookUp)
        return;
    const Descriptions all = m_lookUp();
    for (int i = 0; i < count(); ++i) {
        const auto told = all.value(itemData(i).toInt(),
                                    {{}, QStringLiteral("There is no such port on this machine."), false});
        setItemData(i, told.device, kDeviceRole);
        setItemData(i, told.isThere, kIsThereRole);
        setItemData(i, plainToolTip(told.toolTip), Qt::ToolTipRole);
    }
    setToolTip(currentData(Qt::ToolTipRole).toString() +
               (isEnabled() ? QString() : QStringLiteral("\nClose the port to choose another one.")));
}

void PortList::refreshWhileOpen() {
    if (!view()->isVisible())
        return m_whileOpen->stop();
    refresh();
    // A tool tip that is being shown follows, too.
    const QPoint mouse = QCursor::pos();
    const QModelIndex entry = view()->indexAt(view()->viewport()->mapFromGlobal(mouse));
    if (QToolTip::isVisible() && entry.isValid())
        QToolTip::showText(mouse, entry.data(Qt::ToolTipRole).toString(), view()->viewport());
}

} // namespace zrk
