#include "machine/PortCheck.h"

#include "machine/NativePort.h"
#include "machine/NetworkAddress.h"
#include "machine/PortMessages.h"

namespace zrk {

QString portProblem(const PortNames& names, int number) {
    const QString device = names.device(number);
    if (device.isEmpty())
        return port_messages::noDevice(number);
    if (QString problem = networkProblem(device); !problem.isEmpty())
        return port_messages::badName(number, problem);
    // A port on the network would need a connection, which a run makes.
    if (isOnNetwork(device))
        return {};
    const OpenResult foreseen = foreseeOpening(device.toStdString());
    return foreseen.fault == OpenFault::None
               ? QString()
               : port_messages::cannotOpen(port_messages::portName(number, device), foreseen);
}

QString portRemark(const PortNames& names, int number) {
    const QString device = names.device(number);
    if (NetworkAddress::parse(device))
        return QStringLiteral("on the network, not connected; its name is well formed");
    return device.startsWith(QLatin1Char('/')) ? QStringLiteral("there and permitted")
                                               : QStringLiteral("its name is well formed");
}

} // namespace zrk
