#pragma once

#include "platform/PortCatalog.h"

#include <functional>

namespace zrk {

/// Where a Linux system tells about its ports; tests put their own in place.
struct PortPlaces {
    QString terminals = QStringLiteral("/sys/class/tty");
    QString devices = QStringLiteral("/dev");
    QString byId = QStringLiteral("/dev/serial/by-id");
    QString processes = QStringLiteral("/proc");
    QString locks = QStringLiteral("/run/lock");
    /// True when this user may read and write the file.
    std::function<bool(const QString& path)> isPermitted = mayReadAndWrite;

    [[nodiscard]] static bool mayReadAndWrite(const QString& path);
};

/// The ports that have hardware behind them: device and adapter only.
[[nodiscard]] std::vector<PortEntry> installedPorts(const PortPlaces& places);

/// Fills in what the system tells about each entry's device: stable name, there, permitted, free.
void inspectPorts(std::vector<PortEntry>& ports, const PortPlaces& places);

/// Another program that has the device open or has locked it, as far as this user may see it: "socat (4711)".
/// "" for none, and for a port on the network.
[[nodiscard]] QString otherUserOf(const QString& device, const PortPlaces& places = {});

/// True when the device, a port of this machine, is there.
[[nodiscard]] bool isInstalled(const QString& device);

/// True when both names lead to the same device.
[[nodiscard]] bool isSameDevice(const QString& one, const QString& other);

} // namespace zrk
