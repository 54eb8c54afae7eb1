#include "app/TitleRow.h"

#include <QEvent>
#include <QGroupBox>
#include <QHBoxLayout>

#include <algorithm>

namespace zrk {
namespace {

constexpr int kTitleSpacing = 6;
constexpr int kGapBelow = 2;

} // namespace

TitleRow::TitleRow(QGroupBox* box, int insideRight)
    : QWidget(box), m_box(box), m_row(new QHBoxLayout(this)), m_insideRight(insideRight) {
    m_row->setContentsMargins(0, 0, 0, 0);
    m_row->setSpacing(kTitleSpacing);
    box->installEventFilter(this);
}

void TitleRow::addWidget(QWidget* widget) {
    m_row->addWidget(widget);
}

bool TitleRow::event(QEvent* event) {
    const bool done = QWidget::event(event);
    if (event->type() == QEvent::LayoutRequest) // its contents have changed
        place();
    return done;
}

bool TitleRow::eventFilter(QObject* watched, QEvent* event) {
    if (watched == m_box && event->type() == QEvent::Resize)
        place();
    return QWidget::eventFilter(watched, event);
}

void TitleRow::place() {
    const QSize size = sizeHint();
    setGeometry(m_box->width() - size.width() - m_insideRight, 0, size.width(), size.height());
}

int roomFor(const TitleRow& row, const QGroupBox& box) {
    return std::max(kGapBelow, row.sizeHint().height() + kGapBelow - box.contentsMargins().top());
}

} // namespace zrk
