#pragma once

#include <QString>

class QMenu;
class QWidget;

namespace zrk {

class ConsoleKeys;

/// Makes the menu for the pause after each pasted line, for boards that read slowly. The file `store`
/// remembers the choice from one run to the next. The keys must outlive the menu.
[[nodiscard]] QMenu* makePastePauseMenu(ConsoleKeys& keys, const QString& store, QWidget* parent);

} // namespace zrk
