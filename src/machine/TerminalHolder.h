#pragma once

#include <string>
#include <sys/types.h>

namespace zrk {

/// The process whose terminal the device with this number is, "bash (4711)"; "" when it is nobody's. To the
/// program's own session it counts only while one of its standard streams leads there: a script may have got
/// a port as its terminal by merely opening it. Processes of other users count as far as /proc shows them.
[[nodiscard]] std::string terminalHolder(dev_t device);
/// The same for an open device, whatever name it was opened by.
[[nodiscard]] std::string terminalHolder(int descriptor);

} // namespace zrk
