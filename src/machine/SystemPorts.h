#pragma once

#include "platform/PortCatalog.h"

#include <functional>

namespace zrk {

/// The files of a Linux system about its ports; tests use their own.
struct PortPlaces {
    QString terminals = QStringLiteral("/sys/class/tty");
    QString devices = QStringLiteral("/dev");
    QString byId = QStringLiteral("/dev/serial/by-id");
    QString processes = QStringLiteral("/proc");
    QString locks = QStringLiteral("/run/lock");
    /// Returns whether this user may read and write the file.
    std::function<bool(const QString& path)> isPermitted = mayReadAndWrite;

    [[nodiscard]] static bool mayReadAndWrite(const QString& path);
};

/// Lists the ports that have hardware: device and adapter only.
[[nodiscard]] std::vector<PortEntry> installedPorts(const PortPlaces& places);

/// Fills in the system's facts about each entry's device: stable name, there, permitted, free.
void inspectPorts(std::vector<PortEntry>& ports, const PortPlaces& places);

/// Another program that has the device open or has locked it, as far as this user may see it: "socat (4711)".
/// "" for none, and for a port on the network.
[[nodiscard]] QString otherUserOf(const QString& device, const PortPlaces& places = {});

/// Returns whether the device, a port of this machine, is there.
[[nodiscard]] bool isInstalled(const QString& device);

/// Returns whether both names lead to the same device.
[[nodiscard]] bool isSameDevice(const QString& one, const QString& other);

} // namespace zrk
