#pragma once

#include "machine/PortNames.h"

namespace zrk {

/// What stands against opening port `number`, as far as that can be told without opening it: no device, or no
/// permission; "" for nothing. A port on the network is not asked.
[[nodiscard]] QString portProblem(const PortNames& names, int number);

} // namespace zrk
