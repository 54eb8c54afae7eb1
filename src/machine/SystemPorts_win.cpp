#include "machine/SystemPorts.h"

#include <QSerialPortInfo>

#include <algorithm>

namespace zrk {
namespace {

/// "COM3" for "\\.\COM3" as well.
QString comName(const QString& device) {
    const QString prefix = QStringLiteral("\\\\.\\");
    return (device.startsWith(prefix) ? device.mid(prefix.size()) : device).toUpper();
}

QString hexadecimal(quint16 id) {
    return QStringLiteral("%1").arg(id, 4, 16, QLatin1Char('0'));
}

} // namespace

bool PortPlaces::mayReadAndWrite(const QString& /*path*/) {
    return true;
}

std::vector<PortEntry> installedPorts(const PortPlaces& /*places*/) {
    std::vector<PortEntry> ports;
    const QList<QSerialPortInfo> known = QSerialPortInfo::availablePorts();
    for (const QSerialPortInfo& info : known) {
        PortEntry port;
        port.device = info.systemLocation();
        port.adapter = info.description();
        port.manufacturer = info.manufacturer();
        port.serialNumber = info.serialNumber();
        if (info.hasVendorIdentifier() && info.hasProductIdentifier())
            port.usbId = hexadecimal(info.vendorIdentifier()) + QLatin1Char(':') +
                         hexadecimal(info.productIdentifier());
        ports.push_back(std::move(port));
    }
    return ports;
}

/// The system keeps an adapter's COM name for it. Who has a port open shows only when it is opened.
void inspectPorts(std::vector<PortEntry>& ports, const PortPlaces& places) {
    const std::vector<PortEntry> installed = installedPorts(places);
    for (PortEntry& port : ports) {
        port.isThere = std::any_of(installed.cbegin(), installed.cend(), [&port](const PortEntry& one) {
            return isSameDevice(one.device, port.device);
        });
        port.stableName = comName(port.device);
    }
}

bool isSameDevice(const QString& one, const QString& other) {
    return comName(one) == comName(other);
}

} // namespace zrk
