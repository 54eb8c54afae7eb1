#include "app/LoaderStyle.h"

#include <QAbstractScrollArea>
#include <QPainter>
#include <QStyleOption>

#include <algorithm>

namespace zrk {
namespace {

constexpr int kRingWidth = 2;
constexpr int kDarkest = 128; // of a light ground's lightness

bool isDark(const QPalette& palette) {
    return palette.color(QPalette::Window).lightness() < kDarkest;
}

QColor between(const QColor& a, const QColor& b) {
    return {(a.red() + b.red()) / 2, (a.green() + b.green()) / 2, (a.blue() + b.blue()) / 2};
}

void drawOutline(QPainter* painter, QRect rect, const QColor& color, int width) {
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing, false);
    painter->setPen(color);
    painter->setBrush(Qt::NoBrush);
    for (int i = 0; i < width; ++i, rect.adjust(1, 1, -1, -1))
        painter->drawRect(rect.adjusted(0, 0, -1, -1));
    painter->restore();
}

bool isScrollArea(const QWidget* widget) {
    return qobject_cast<const QAbstractScrollArea*>(widget) != nullptr;
}

} // namespace

QColor warningColor(const QPalette& palette) {
    return isDark(palette) ? QColor(0xFF, 0x8A, 0x80) : QColor(0xB0, 0x00, 0x20);
}

void LoaderStyle::drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                              const QWidget* widget) const {
    QProxyStyle::drawControl(element, option, painter, widget);
    if (element == CE_ShapedFrame && isScrollArea(widget) && option->state.testFlag(State_HasFocus))
        drawOutline(painter, option->rect, option->palette.color(QPalette::Highlight), kRingWidth);
}

void LoaderStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                                const QWidget* widget) const {
    QProxyStyle::drawPrimitive(element, option, painter, widget);
    // Fusion derives the outline from the ground by darkening it; other styles handle dark grounds.
    if (element == PE_IndicatorCheckBox && isDark(option->palette) &&
        baseStyle()->name() == QLatin1String("fusion"))
        drawOutline(
            painter, option->rect,
            between(option->palette.color(QPalette::WindowText), option->palette.color(QPalette::Window)), 1);
}

int LoaderStyle::pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const {
    const int width = QProxyStyle::pixelMetric(metric, option, widget);
    return metric == PM_DefaultFrameWidth && isScrollArea(widget) ? std::max(width, kRingWidth) : width;
}

} // namespace zrk
