#include "machine/PortDescription.h"

#include "files/PrintableText.h"
#include "platform/PortCatalog.h"

namespace zrk {
namespace {

QString joined(QStringList parts) {
    parts.removeAll(QString());
    return parts.join(QStringLiteral(", "));
}

QString labelled(const char* label, const QString& value) {
    return value.isEmpty() ? QString() : QLatin1String(label) + value;
}

QString permission(const PortEntry& port) {
    if (port.isPermitted.value_or(true))
        return {};
    if (port.group.isEmpty() || port.group == QLatin1String("root"))
        return QStringLiteral("no permission: ask the administrator for access to the device");
    return QStringLiteral("no permission: add yourself to the group %1 and log in again").arg(port.group);
}

QString state(const PortEntry& port) {
    if (!port.isThere)
        return QStringLiteral("on the network; only opening it shows whether it is there");
    if (!*port.isThere)
        return QStringLiteral("not there: plug the adapter in");
    if (!port.isFree)
        return QStringLiteral("there");
    return *port.isFree ? QStringLiteral("free") : QStringLiteral("in use by ") + port.user;
}

} // namespace

QStringList describe(const PortEntry& port) {
    QStringList numbers;
    for (const int number : port.numbers)
        numbers += QStringLiteral("COM%1").arg(number);
    QStringList lines{
        port.name(),
        joined({numbers.join(QStringLiteral(", ")), port.device == port.name() ? QString() : port.device}),
        joined({port.adapter, port.manufacturer}),
        joined({labelled("serial number ", port.serialNumber), labelled("USB ", port.usbId)}),
        state(port),
        permission(port)};
    lines.removeAll(QString());
    for (QString& line : lines)
        line = printableText(line); // an adapter names itself, and so does the program that uses the port
    return lines;
}

} // namespace zrk
