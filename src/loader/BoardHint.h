#pragma once

#include "controls/Outcome.h"

#include <QByteArray>
#include <QString>

namespace zrk {

/// What most likely is the matter when an operation has ended like this with the board having sent these
/// bytes last, and what to do; "" when nothing is to be said. `port` is named in it.
[[nodiscard]] QString boardHint(Outcome outcome, const QByteArray& received, const QString& port);

/// What to do about a board that should run a program and has said nothing since the port was opened but its
/// BootID, which only the boot ROM sends; "" when it has said anything else.
[[nodiscard]] QString bootRomHint(const QByteArray& received);

} // namespace zrk
