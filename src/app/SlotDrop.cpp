#include "app/SlotDrop.h"

#include "app/FileNameEdit.h"
#include "app/LoaderWidgets.h"

#include <QCheckBox>
#include <QDir>
#include <QDropEvent>
#include <QFileInfo>
#include <QGroupBox>
#include <QLineEdit>
#include <QMimeData>
#include <QUrl>

namespace zrk {

QString draggedFile(const QMimeData* data) {
    const QList<QUrl> urls = data->urls();
    if (urls.size() != 1 || !urls.first().isLocalFile())
        return {};
    const QString path = urls.first().toLocalFile();
    return QFileInfo(path).isFile() ? QDir::toNativeSeparators(path) : QString();
}

SlotDrop::SlotDrop(const LoaderWidgets& widgets, std::function<bool()> accepts,
                   std::function<void(int, const QString&)> fill, QObject* parent)
    : QObject(parent), m_widgets(widgets), m_accepts(std::move(accepts)), m_fill(std::move(fill)) {
    for (QWidget* frame : {widgets.fraFlashLdr, widgets.fraExecutables, widgets.fraImages}) {
        frame->setAcceptDrops(true);
        frame->installEventFilter(this);
    }
}

bool SlotDrop::eventFilter(QObject* watched, QEvent* event) {
    const bool drop = event->type() == QEvent::Drop;
    if (!drop && event->type() != QEvent::DragEnter && event->type() != QEvent::DragMove)
        return QObject::eventFilter(watched, event);
    auto* drag = static_cast<QDropEvent*>(event);
    const int slot = slotAt(static_cast<QWidget*>(watched), drag->position().toPoint());
    const QString path = draggedFile(drag->mimeData());
    // A drag that enters between two rows must be accepted, or its moves over the rows never come.
    const bool welcome = m_accepts() && !path.isEmpty() && (slot >= 0 || event->type() == QEvent::DragEnter);
    if (welcome) {
        drag->setDropAction(Qt::CopyAction);
        drag->accept();
        if (drop)
            m_fill(slot, path);
    } else {
        drag->ignore();
    }
    return true;
}

int SlotDrop::slotAt(const QWidget* frame, QPoint position) const {
    for (int slot = 0; slot < kSlotCount; ++slot) {
        const QCheckBox* box = m_widgets.slots[static_cast<std::size_t>(slot)].chkExeURK;
        const QLineEdit* file = m_widgets.slots[static_cast<std::size_t>(slot)].txtFilNam;
        if (box->parentWidget() != frame)
            continue;
        const QRect row = box->geometry().united(file->geometry());
        if (position.y() >= row.top() && position.y() <= row.bottom())
            return slot;
    }
    return -1;
}

} // namespace zrk
