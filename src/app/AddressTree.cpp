#include "app/AddressTree.h"

#include <QEvent>
#include <QFontInfo>
#include <QHeaderView>
#include <QScopedValueRollback>
#include <QScrollBar>
#include <QStyle>

#include <algorithm>

namespace zrk {
namespace {

constexpr int kColumns = 3;
constexpr int kSmallestPercent = 50;
constexpr int kStepPercent = 5;

} // namespace

AddressTree::AddressTree(QWidget* parent) : QTreeWidget(parent) {
    setHeaderLabels({QStringLiteral("index"), QStringLiteral("start"), QStringLiteral("size")});
    setRootIsDecorated(false);
    setUniformRowHeights(true);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setTabKeyNavigation(false);
    header()->setSectionsMovable(false);
    header()->setStretchLastSection(true);
    // As high as the slots' frames allow.
    setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Ignored);
    fitColumns();
}

void AddressTree::changeEvent(QEvent* event) {
    QTreeWidget::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange)
        fitColumns();
}

void AddressTree::resizeEvent(QResizeEvent* event) {
    QTreeWidget::resizeEvent(event);
    fitColumns();
}

void AddressTree::fitColumns() {
    if (m_isFitting)
        return;
    const QScopedValueRollback fitting(m_isFitting, true);
    setFont({}); // the window's
    setMinimumSize(usualSize());
    const qreal usual = QFontInfo(font()).pointSizeF();
    for (int percent = 100; !columnsFit() && percent > kSmallestPercent;) {
        percent -= kStepPercent;
        QFont smaller = font();
        smaller.setPointSizeF(usual * percent / 100);
        setFont(smaller);
    }
}

/// Returns the room for seven rows with sizes of six digits.
QSize AddressTree::usualSize() const {
    const int margins = 4 * (style()->pixelMetric(QStyle::PM_FocusFrameHMargin, nullptr, this) + 1);
    const int numbers = fontMetrics().horizontalAdvance(QStringLiteral("0x800000000x800000"));
    return {header()->sectionSizeHint(0) + numbers + margins + 2 * frameWidth(),
            8 * fontMetrics().lineSpacing()};
}

/// Makes each column as wide as it needs to be, and the last ones wider if there is room.
bool AddressTree::columnsFit() {
    // Counts the scroll bar in any case: it comes and goes with the font that is chosen here.
    int left = maximumViewportSize().width() - verticalScrollBar()->sizeHint().width();
    for (int column = 0; column < kColumns; ++column) {
        const int needed = std::max(sizeHintForColumn(column), header()->sectionSizeHint(column));
        setColumnWidth(column, needed);
        left -= needed;
    }
    if (left > 0) // the last column takes the other half by itself
        setColumnWidth(1, columnWidth(1) + left / 2);
    return left >= 0;
}

} // namespace zrk
