#pragma once

class QWidget;

namespace zrk {

/// Shows the keys that no menu names, in a window of its own beside `parent`: whatever runs goes on.
void showKeysHelp(QWidget* parent);

} // namespace zrk
