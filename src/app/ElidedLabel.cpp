#include "app/ElidedLabel.h"

#include "app/PlainToolTip.h"

#include <QMouseEvent>
#include <QPainter>
#include <QStyle>

#include <algorithm>

namespace zrk {
namespace {

constexpr int kPadding = 3;

} // namespace

void ElidedLabel::setIcon(const QIcon& icon) {
    m_icon = icon;
    update();
}

void ElidedLabel::mouseReleaseEvent(QMouseEvent* event) {
    QLabel::mouseReleaseEvent(event);
    if (event->button() == Qt::LeftButton && rect().contains(event->pos()))
        Q_EMIT clicked();
}

void ElidedLabel::paintEvent(QPaintEvent* event) {
    Q_UNUSED(event)
    QPainter painter(this);
    drawFrame(&painter);
    QRect room = contentsRect().marginsRemoved(QMargins(kPadding, 0, kPadding, 0));
    if (!m_icon.isNull()) {
        const int side = std::min(room.height(), fontMetrics().height());
        QRect place(room.topLeft(), QSize(side, side));
        place.moveTop(room.top() + (room.height() - side) / 2);
        m_icon.paint(&painter, place);
        room.setLeft(place.right() + 1 + kPadding);
    }
    const QString shown = fontMetrics().elidedText(text(), Qt::ElideRight, room.width());
    const QString whole = plainToolTip(text());
    if (shown != text() && toolTip() != whole)
        setToolTip(whole);
    else if (shown == text() && !toolTip().isEmpty())
        setToolTip(QString());
    style()->drawItemText(&painter, room, Qt::AlignVCenter | Qt::AlignLeft, palette(), isEnabled(), shown,
                          foregroundRole());
}

} // namespace zrk
