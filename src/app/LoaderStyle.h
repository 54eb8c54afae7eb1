#pragma once

#include <QProxyStyle>

namespace zrk {

/// Returns the colour of warnings, which is readable on the palette's ground.
[[nodiscard]] QColor warningColor(const QPalette& palette);

/// The desktop's style, plus what it leaves invisible: a ring around a list or the console that has the
/// keyboard, and the outlines of check boxes on a dark ground.
class LoaderStyle final : public QProxyStyle {
    Q_OBJECT

  public:
    void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override;
    void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                       const QWidget* widget) const override;
    [[nodiscard]] int pixelMetric(PixelMetric metric, const QStyleOption* option,
                                  const QWidget* widget) const override;
};

} // namespace zrk
