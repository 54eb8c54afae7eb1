#pragma once

#include <string>

namespace zrk {

/// The process whose terminal the open device is, "bash (4711)"; "" when it is nobody's. To the program's own
/// session it counts only while one of its standard streams leads there: a script may have got a port as its
/// terminal by merely opening it. Processes of other users count as far as /proc shows them.
[[nodiscard]] std::string terminalHolder(int descriptor);

} // namespace zrk
