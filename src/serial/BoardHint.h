#pragma once

#include "controls/Outcome.h"

#include <QByteArray>
#include <QString>

namespace zrk {

/// Returns the most likely cause when an operation has ended like this with the board having sent these bytes
/// last, and what to do; "" if there is none. `port` is named in it.
[[nodiscard]] QString boardHint(Outcome outcome, const QByteArray& received, const QString& port);

/// Returns what to do if a board that should run a program has sent only its BootID since the port was
/// opened, as only the boot ROM does; "" if it has sent anything else.
[[nodiscard]] QString bootRomHint(const QByteArray& received);

} // namespace zrk
