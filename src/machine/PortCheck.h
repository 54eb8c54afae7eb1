#pragma once

#include "machine/PortNames.h"

namespace zrk {

/// Says why a run could not open port `number`, in the run's own words, as far as that shows without opening
/// it; "" if it could. Of a port on the network only the name is checked. That another program has the port
/// open need not keep a run from it: only a lock does, and any account can write a file that says so.
[[nodiscard]] QString portProblem(const PortNames& names, int number);

/// Returns what is known of a port without a problem.
[[nodiscard]] QString portRemark(const PortNames& names, int number);

} // namespace zrk
