#pragma once

class QString;
class QWidget;

namespace zrk {

/// Shows a text whole above a widget, as wide as that, until a click elsewhere or Escape. It can be selected
/// and copied. Does nothing for "".
void showTextAbove(QWidget& widget, const QString& text);

} // namespace zrk
