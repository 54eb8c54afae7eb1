#include "files/RegularFile.h"
#include "machine/SystemPorts.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QHash>

#include <algorithm>
#include <filesystem>
#include <unistd.h>

// Everything here is read from files of the system. Qt's list of ports is not used: for built-in ports of the
// usual driver it opens each device to find out whether there is hardware, and leaves out those that are in
// use or not permitted.

namespace zrk {
namespace {

namespace fs = std::filesystem;

QString firstLine(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readLine()).simplified() : QString();
}

/// Returns the device that links lead to; the name itself if there is none.
QString realDevice(const QString& name) {
    const QString path = QFileInfo(name).canonicalFilePath();
    return path.isEmpty() ? name : path;
}

/// Fills in the USB device, some folders above the port, which belongs to one of its interfaces.
void tellAdapter(PortEntry& port, QString folder) {
    while (!folder.isEmpty() && !QFileInfo::exists(folder + QStringLiteral("/idVendor")))
        folder.truncate(folder.lastIndexOf(QLatin1Char('/')));
    if (folder.isEmpty())
        return;
    const auto attribute = [&folder](const char* name) {
        return firstLine(folder + QLatin1Char('/') + QLatin1String(name));
    };
    port.adapter = attribute("product");
    port.manufacturer = attribute("manufacturer");
    port.serialNumber = attribute("serial");
    port.usbId = attribute("idVendor") + QLatin1Char(':') + attribute("idProduct");
}

bool isThisProcess(const QString& number) {
    return number == QString::number(QCoreApplication::applicationPid());
}

/// Returns "minicom (4711)"; "" if the process has ended.
QString processNamed(const QString& number, const PortPlaces& places) {
    if (isThisProcess(number))
        return QStringLiteral("this program");
    const QString folder = places.processes + QLatin1Char('/') + number;
    if (!QFileInfo::exists(folder))
        return {};
    return QStringLiteral("%1 (%2)").arg(firstLine(folder + QStringLiteral("/comm")), number);
}

/// Returns the open files of a process, as far as this user may see them and it has not ended.
std::vector<QString> openFiles(const QString& process) {
    std::vector<QString> files;
    std::error_code fault;
    const fs::path folder = (process + QStringLiteral("/fd")).toStdString();
    for (fs::directory_iterator file(folder, fault), end; !fault && file != end; file.increment(fault)) {
        std::error_code gone;
        files.push_back(QString::fromStdString(fs::read_symlink(file->path(), gone).string()));
    }
    return files;
}

/// Which of the devices are open, and the number of the process; preferably another one than this.
QHash<QString, QString> openDevices(const QHash<QString, QString>& devices, const PortPlaces& places) {
    QHash<QString, QString> users;
    const QStringList numbers = QDir(places.processes).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    for (const QString& number : numbers) {
        if (!number.at(0).isDigit())
            continue;
        const std::vector<QString> files = openFiles(places.processes + QLatin1Char('/') + number);
        // A program that makes pseudo-terminals, as a simulated board does, is the far end of its own.
        const bool makesTerminals = std::any_of(files.cbegin(), files.cend(), [](const QString& file) {
            return file.endsWith(QLatin1String("/ptmx"));
        });
        for (const QString& file : files) {
            const bool isFarEnd = makesTerminals && file.startsWith(QLatin1String("/dev/pts/"));
            if (devices.contains(file) && !isFarEnd && !(users.contains(file) && isThisProcess(number)))
                users.insert(file, number);
        }
    }
    return users;
}

/// Returns the process number in the port's lock file, which programs write by custom.
QString lockHolder(const QString& device, const PortPlaces& places) {
    // Any account may write to the folder of locks: a pipe of that name must not block the reader.
    constexpr qint64 kLongestNumber = 32;
    QFile lock(places.locks + QStringLiteral("/LCK..") + QFileInfo(device).fileName());
    if (!openForReading(lock, Links::Refuse).isEmpty())
        return {};
    const QString number = QString::fromLatin1(lock.readLine(kLongestNumber)).simplified();
    bool isNumber = false;
    return number.toInt(&isNumber) > 0 && isNumber ? processNamed(number, places) : QString();
}

/// The process that uses the device, preferably another one than this; "" for none.
QString userAmong(const QString& device, const QHash<QString, QString>& users, const PortPlaces& places) {
    const QString number = users.value(device);
    if (!number.isEmpty() && !isThisProcess(number))
        return processNamed(number, places);
    const QString holder = lockHolder(device, places);
    return holder.isEmpty() && !number.isEmpty() ? processNamed(number, places) : holder;
}

} // namespace

bool PortPlaces::mayReadAndWrite(const QString& path) {
    return access(path.toLocal8Bit().constData(), R_OK | W_OK) == 0;
}

std::vector<PortEntry> installedPorts(const PortPlaces& places) {
    std::vector<PortEntry> ports;
    const QStringList names = QDir(places.terminals).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    for (const QString& name : names) {
        const QString terminal = places.terminals + QLatin1Char('/') + name;
        // Consoles and pseudo-terminals have no device; places for built-in ports without a port have type 0.
        const QString device = QFileInfo(terminal + QStringLiteral("/device")).canonicalFilePath();
        const QString type = firstLine(terminal + QStringLiteral("/type"));
        if (device.isEmpty() || type == QLatin1String("0"))
            continue;
        PortEntry port;
        port.device = places.devices + QLatin1Char('/') + name;
        tellAdapter(port, device);
        if (port.usbId.isEmpty() && !type.isEmpty())
            port.adapter = QStringLiteral("Built-in serial port");
        ports.push_back(std::move(port));
    }
    return ports;
}

void inspectPorts(std::vector<PortEntry>& ports, const PortPlaces& places) {
    QHash<QString, QString> stableNames;
    for (const PortEntry& port : ports)
        stableNames.insert(realDevice(port.device), {});
    const QFileInfoList links =
        QDir(places.byId).entryInfoList(QDir::Files | QDir::System | QDir::NoDotAndDotDot);
    for (const QFileInfo& link : links)
        stableNames.insert(link.canonicalFilePath(), link.filePath());
    const QHash<QString, QString> users = openDevices(stableNames, places);

    for (PortEntry& port : ports) {
        const QString device = realDevice(port.device);
        port.isThere = QFileInfo::exists(device);
        port.stableName = stableNames.value(device);
        if (!*port.isThere)
            continue;
        port.isPermitted = places.isPermitted(device);
        port.group = QFileInfo(device).group();
        port.user = userAmong(device, users, places);
        port.isFree = port.user.isEmpty();
    }
}

QString otherUserOf(const QString& device, const PortPlaces& places) {
    const QString real = QFileInfo(device).canonicalFilePath();
    if (real.isEmpty())
        return {};
    const QString user = userAmong(real, openDevices({{real, {}}}, places), places);
    return user == processNamed(QString::number(QCoreApplication::applicationPid()), places) ? QString()
                                                                                             : user;
}

bool isInstalled(const QString& device) {
    return !device.isEmpty() && QFileInfo::exists(device);
}

bool isSameDevice(const QString& one, const QString& other) {
    return realDevice(one) == realDevice(other);
}

} // namespace zrk
