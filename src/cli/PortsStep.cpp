#include "cli/PortsStep.h"

#include "cli/Options.h"
#include "cli/Output.h"
#include "machine/MachineCatalog.h"
#include "machine/PortDescription.h"

#include <QJsonArray>

namespace zrk {
namespace {

const QString kLineEnd = QStringLiteral("\r\n");

QJsonValue valueOf(const std::optional<bool>& known) {
    return known ? QJsonValue(*known) : QJsonValue(QJsonValue::Null);
}

QJsonObject fieldsOf(const PortEntry& port) {
    QJsonArray numbers;
    for (const int number : port.numbers)
        numbers.append(number);
    return {{QStringLiteral("name"), port.name()},
            {QStringLiteral("device"), port.device},
            {QStringLiteral("adapter"), port.adapter},
            {QStringLiteral("manufacturer"), port.manufacturer},
            {QStringLiteral("serial"), port.serialNumber},
            {QStringLiteral("usb"), port.usbId},
            {QStringLiteral("com"), numbers},
            {QStringLiteral("there"), valueOf(port.isThere)},
            {QStringLiteral("permitted"), valueOf(port.isPermitted)},
            {QStringLiteral("group"), port.group},
            {QStringLiteral("free"), valueOf(port.isFree)},
            {QStringLiteral("user"), port.user}};
}

QString textOf(const std::vector<PortEntry>& ports) {
    if (ports.empty())
        return QStringLiteral("No serial port was found. Plug an adapter in, or name a port with --port.") +
               kLineEnd;
    QStringList blocks;
    for (const PortEntry& port : ports)
        blocks += describe(port).join(kLineEnd + QStringLiteral("  ")) + kLineEnd;
    return blocks.join(QString());
}

QString namesOf(const std::vector<PortEntry>& ports) {
    QString names;
    for (const PortEntry& port : ports) {
        if (port.isThere.value_or(true))
            names += port.name() + kLineEnd;
    }
    return names;
}

} // namespace

ExitStatus listPorts(const StepRun& run) {
    if (run.output.place().row > 0)
        return ExitStatus::Done; // the first of several boards prints for all
    const auto ports = MachineCatalog(PortNames(run.options.program.ports), run.options.ports).ports();
    const PrintStyle& style = run.output.printer().style();
    if (style.json) {
        for (const PortEntry& port : ports)
            run.output.event("port", fieldsOf(port));
        return ExitStatus::Done;
    }
    run.output.console(style.quiet ? namesOf(ports) : textOf(ports));
    return ExitStatus::Done;
}

} // namespace zrk
