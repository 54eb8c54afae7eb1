#pragma once

#include <QString>

#include <optional>
#include <vector>

namespace zrk {

/// A serial port as far as it is known without opening it, which would raise DTR and reset many a board. What
/// cannot be found out that way is std::nullopt.
struct PortEntry {
    QString device;     ///< as it is opened: "/dev/ttyUSB0", "\\.\COM3", or the name that the user gave it
    QString stableName; ///< the name that stays when the adapter is plugged in elsewhere, "" for none
    QString adapter;
    QString manufacturer;
    QString serialNumber;
    QString usbId;            ///< "vendor:product", four hexadecimal digits each; "" for no USB adapter
    std::vector<int> numbers; ///< its COMn in this program
    std::optional<bool> isThere;
    std::optional<bool> isPermitted;
    QString group; ///< those who may use it, "" when not known
    std::optional<bool> isFree;
    QString user; ///< "minicom (4711)": the process that has it open, if this user may see it

    /// Returns the name for scripts.
    [[nodiscard]] const QString& name() const { return stableName.isEmpty() ? device : stableName; }
};

/// The serial ports that the machine has and those that the user has named.
class PortCatalog {
  public:
    virtual ~PortCatalog() = default;

    /// Returns the present ports. Reads files and opens no port; takes some milliseconds.
    [[nodiscard]] virtual std::vector<PortEntry> ports() const = 0;
};

} // namespace zrk
