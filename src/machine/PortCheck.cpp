#include "machine/PortCheck.h"

#include "files/PrintableText.h"
#include "machine/NetworkAddress.h"

#include <QFileInfo>

#include <filesystem>

namespace zrk {

QString portProblem(const PortNames& names, int number) {
    const QString device = names.device(number);
    if (device.isEmpty())
        return QStringLiteral("COM%1 stands for no device; name one with --port DEVICE").arg(number);
    if (QString problem = networkProblem(device); !problem.isEmpty())
        return problem;
    // Only paths can be looked at: a COM name tells nothing before it is opened, and a port on the network
    // would have to be connected to, which is left to a run.
    if (!device.startsWith(QLatin1Char('/')))
        return {};
    const QFileInfo file(device);
    if (!file.exists())
        return QStringLiteral("%1: no such device").arg(printableText(device));
    std::error_code fault;
    if (!std::filesystem::is_character_file(device.toStdString(), fault))
        return QStringLiteral("%1: it is not a serial port").arg(printableText(device));
    if (!file.isReadable() || !file.isWritable())
        return QStringLiteral("%1: no permission; join the group %2")
            .arg(printableText(device), file.group());
    return {};
}

QString portRemark(const PortNames& names, int number) {
    const QString device = names.device(number);
    if (NetworkAddress::parse(device))
        return QStringLiteral("on the network, not connected to; its name is well formed");
    return device.startsWith(QLatin1Char('/')) ? QStringLiteral("there and permitted")
                                               : QStringLiteral("its name is well formed");
}

} // namespace zrk
