#pragma once

#include "machine/NativePort.h"

namespace zrk {

/// What this error of an attempt to open the device means.
[[nodiscard]] OpenResult openFailure(int error, const std::string& device);

} // namespace zrk
