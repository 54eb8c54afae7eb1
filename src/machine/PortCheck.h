#pragma once

#include "machine/PortNames.h"

namespace zrk {

/// What stands against opening port `number`, as far as that can be told without opening it: no device, no
/// permission, or another program that has it open; "" for nothing. Of a port on the network only the name is
/// looked at.
[[nodiscard]] QString portProblem(const PortNames& names, int number);

/// What is known of a port that nothing stands against.
[[nodiscard]] QString portRemark(const PortNames& names, int number);

} // namespace zrk
