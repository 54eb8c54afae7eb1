#pragma once

class QWidget;

namespace zrk {

/// Shows the keys that no menu names, in a window of its own beside `parent`, which stops nothing.
void showKeysHelp(QWidget* parent);

} // namespace zrk
