#pragma once

class QString;
class QWidget;

namespace zrk {

/// Shows the whole text in a pop-up above the widget, as wide as that. It can be selected and copied. A click
/// elsewhere or Escape closes it. Does nothing for "".
void showTextAbove(QWidget& widget, const QString& text);

} // namespace zrk
