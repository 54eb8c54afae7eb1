#pragma once

#include "machine/PortNames.h"

namespace zrk {

/// Says why a run could not open port `number`, in the run's own words, as far as that shows without opening
/// it; "" if it could. Checks only the name of a port on the network. Another program that has the port open
/// does not always prevent a run: only a lock does, and any account can write such a file.
[[nodiscard]] QString portProblem(const PortNames& names, int number);

/// Returns what is known of a port without a problem.
[[nodiscard]] QString portRemark(const PortNames& names, int number);

} // namespace zrk
