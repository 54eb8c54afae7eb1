#include "app/ElidedLabel.h"

#include "app/PlainToolTip.h"

#include <QPainter>
#include <QStyle>

namespace zrk {
namespace {

constexpr int kPadding = 3;

} // namespace

void ElidedLabel::paintEvent(QPaintEvent* event) {
    Q_UNUSED(event)
    QPainter painter(this);
    drawFrame(&painter);
    const QString shown =
        fontMetrics().elidedText(text(), Qt::ElideRight, contentsRect().width() - 2 * kPadding);
    const QString whole = plainToolTip(text());
    if (shown != text() && toolTip() != whole)
        setToolTip(whole);
    else if (shown == text() && !toolTip().isEmpty())
        setToolTip(QString());
    style()->drawItemText(&painter, contentsRect().marginsRemoved(QMargins(kPadding, 0, kPadding, 0)),
                          Qt::AlignVCenter | Qt::AlignLeft, palette(), isEnabled(), shown, foregroundRole());
}

} // namespace zrk
