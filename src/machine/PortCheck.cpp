#include "machine/PortCheck.h"

#include "files/PrintableText.h"
#include "machine/MachineCatalog.h"
#include "machine/NetworkAddress.h"

#include <QFileInfo>

#include <algorithm>
#include <filesystem>
#ifdef Q_OS_LINUX
#include <sys/stat.h>
#include <sys/sysmacros.h>
#endif

namespace zrk {
namespace {

/// A device such as /dev/null. Opening it would be the sure way to tell, and would switch a real port's DTR.
bool isNoTerminal(const QString& device) {
#ifdef Q_OS_LINUX
    struct stat facts {};
    if (::stat(device.toLocal8Bit().constData(), &facts) != 0)
        return false;
    const QString kind = QFileInfo(QStringLiteral("/sys/dev/char/%1:%2/subsystem")
                                       .arg(major(facts.st_rdev))
                                       .arg(minor(facts.st_rdev)))
                             .canonicalFilePath();
    return !kind.isEmpty() && !kind.endsWith(QLatin1String("/tty"));
#else
    (void)device;
    return false;
#endif
}

QString noPermission(const QFileInfo& file) {
    const QString group = file.group();
    const bool helps =
        file.permission(QFile::ReadGroup | QFile::WriteGroup) && group != QLatin1String("root");
    return helps ? QStringLiteral("no permission; join the group %1").arg(group)
                 : QStringLiteral("no permission; ask the administrator for access");
}

/// Who has the port open; "" for no one.
QString userOf(const PortNames& names, int number) {
    for (const PortEntry& entry : MachineCatalog(names).ports()) {
        const bool isIt =
            std::find(entry.numbers.cbegin(), entry.numbers.cend(), number) != entry.numbers.cend();
        if (isIt && !entry.isFree.value_or(true))
            return entry.user.isEmpty() ? QStringLiteral("another program") : entry.user;
    }
    return {};
}

} // namespace

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
    if (!std::filesystem::is_character_file(device.toStdString(), fault) || isNoTerminal(device))
        return QStringLiteral("%1: it is not a serial port").arg(printableText(device));
    if (!file.isReadable() || !file.isWritable())
        return QStringLiteral("%1: ").arg(printableText(device)) + noPermission(file);
    if (const QString user = userOf(names, number); !user.isEmpty())
        return QStringLiteral("%1: it is in use by %2").arg(printableText(device), printableText(user));
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
