#pragma once

#include "cli/Steps.h"

#include <QJsonArray>
#include <QJsonObject>

namespace zrk {

class ImageStore;

// What a run is about, as objects for programs.

/// Each image: slot, title, file, address, memory, bytes and CRC-32. All of them are in the store already.
[[nodiscard]] QJsonArray imagesOf(const Loader& loader, const std::vector<Slot>& slots, ImageStore& store);

/// Each step with its argument.
[[nodiscard]] QJsonArray stepsToDo(const StepList& steps);

/// The adapter of a port of this machine: "adapter" and "serial", "" where unknown.
[[nodiscard]] QJsonObject adapterOf(const QString& device);

/// "IRAM", "SDRAM" or "NAND flash".
[[nodiscard]] QString memoryName(Memory memory);

} // namespace zrk
