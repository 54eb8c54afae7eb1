#pragma once

#include "machine/NativePort.h"

namespace zrk {

/// Explains this error of an attempt to open the device.
[[nodiscard]] OpenResult openFailure(int error, const std::string& device);

} // namespace zrk
