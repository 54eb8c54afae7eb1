#pragma once

#include "cli/Steps.h"

#include <QJsonArray>
#include <QJsonObject>

namespace zrk {

class ImageStore;

// The facts about a run, as objects for programs.

/// Returns each image, which the store has: slot, title, file, address, memory, bytes and CRC-32.
[[nodiscard]] QJsonArray imagesOf(const Loader& loader, const std::vector<Slot>& slots, ImageStore& store);

/// Returns each step with its argument.
[[nodiscard]] QJsonArray stepsToDo(const StepList& steps);

/// Returns the adapter of a port of this machine: "adapter" and "serial", "" if unknown.
[[nodiscard]] QJsonObject adapterOf(const QString& device);

/// Returns "IRAM", "SDRAM" or "NAND flash".
[[nodiscard]] QString memoryName(Memory memory);

} // namespace zrk
