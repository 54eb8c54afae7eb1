#include "machine/PortCheck.h"

#include <QFileInfo>

namespace zrk {

QString portProblem(const PortNames& names, int number) {
    const QString device = names.device(number);
    if (device.isEmpty())
        return QStringLiteral("COM%1 stands for no device; name one with --port DEVICE").arg(number);
    // Only paths can be looked at: a COM name and a port on the network tell nothing before they are opened.
    if (!device.startsWith(QLatin1Char('/')))
        return {};
    const QFileInfo file(device);
    if (!file.exists())
        return QStringLiteral("%1: no such device").arg(device);
    if (!file.isReadable() || !file.isWritable())
        return QStringLiteral("%1: no permission; join the group %2").arg(device, file.group());
    return {};
}

} // namespace zrk
