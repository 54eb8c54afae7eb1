#pragma once

#include <string>
#include <sys/types.h>

namespace zrk {

/// Returns the process whose terminal the device with this number is, "bash (4711)"; "" if none. In the
/// program's own session it counts only while one of its standard streams leads there: a script may get a
/// port as its terminal by opening it. Processes of other users count as far as /proc shows them.
[[nodiscard]] std::string terminalHolder(dev_t device);
/// Returns the same for an open device, whatever name it was opened by.
[[nodiscard]] std::string terminalHolder(int descriptor);

} // namespace zrk
