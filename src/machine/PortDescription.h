#pragma once

#include <QStringList>

namespace zrk {

struct PortEntry;

/// Returns a description of a port for users, line by line: its name, its numbers and device, its adapter,
/// whether it can be opened, and what to do if not.
[[nodiscard]] QStringList describe(const PortEntry& port);

} // namespace zrk
