#pragma once

#include <QString>
#include <QStringList>

namespace zrk {

/// The facts about a USB adapter in Windows' names for its device.
struct UsbInstance {
    QString usbId; ///< "0403:6001"; "" without a USB adapter
    QString serialNumber;
};

/// Reads the instance ids of a port and of its parents, the port's first:
///
///   USB\VID_2341&PID_0043\7563331313335150D180         the adapter itself
///   USB\VID_10C4&PID_EA70&MI_00\6&2A8B&0&0000          one port of several; the serial number is the parent's
///   FTDIBUS\VID_0403+PID_6001+A50285BIA\0000           a driver's own bus; the last letter counts the ports
///
/// The system gives an adapter without a serial number a text with "&" for the socket.
[[nodiscard]] UsbInstance usbInstance(const QStringList& instanceIds);

} // namespace zrk
