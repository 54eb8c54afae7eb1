#pragma once

#include <QString>

namespace zrk {

struct Controls;

/// Returns the text of an INI file in `folder` that fills the slots as they are; slots without a file are left out.
/// Paths within the folder are relative to it. Fails with InvalidArgument, which names the slot, for a path
/// that an INI file cannot hold.
[[nodiscard]] QString iniTextOf(const Controls& controls, const QString& folder);

} // namespace zrk
