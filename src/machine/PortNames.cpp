#include "machine/PortNames.h"

#include "machine/NetworkAddress.h"
#include "platform/RuntimeFailure.h"

#include <QFileInfo>
#include <QRegularExpression>

#include <algorithm>

namespace zrk {
namespace {

bool isPortNumber(int number) {
    return number >= PortNames::kLowest && number <= PortNames::kHighest;
}

/// Returns a device without the colon of Windows' own lists, which opens no device there.
QString withoutColon(QString device) {
#ifdef Q_OS_WIN
    static const QRegularExpression kColon(QStringLiteral("^COM[0-9]+:$"),
                                           QRegularExpression::CaseInsensitiveOption);
    if (kColon.match(device).hasMatch())
        device.chop(1);
#endif
    return device;
}

} // namespace

PortNames::Machine PortNames::Machine::real() {
    Machine machine;
    machine.environment = [](const QString& variable) {
        return qEnvironmentVariable(variable.toLatin1().constData());
    };
#ifdef Q_OS_WIN
    // A COM name is not a file; only opening it shows whether there is a port.
    machine.exists = [](const QString&) { return true; };
#else
    machine.exists = [](const QString& device) { return QFileInfo::exists(device); };
#endif
    return machine;
}

PortNames::PortNames(Overrides overrides, Machine machine)
    : m_overrides(std::move(overrides)), m_machine(std::move(machine)) {}

QString PortNames::device(int number) const {
    if (!isPortNumber(number))
        return {};
    if (const auto found = m_overrides.find(number); found != m_overrides.end())
        return withoutColon(found->second);
    if (QString named = m_machine.environment(variable(number)); !named.isEmpty())
        return withoutColon(std::move(named));
    const QStringList devices = candidates(number);
    const auto found = std::find_if(devices.begin(), devices.end(), m_machine.exists);
    return found == devices.end() ? QString() : *found;
}

bool PortNames::isNamed(int number) const {
    return m_overrides.contains(number) || !m_machine.environment(variable(number)).isEmpty();
}

bool PortNames::isFallback(int number) const {
#ifdef Q_OS_WIN
    (void)number; // COMn is always the same port
    return false;
#else
    return isPortNumber(number) && !isNamed(number) && device(number) == candidates(number).constLast();
#endif
}

QString PortNames::deviceNamed(const QString& name) const {
    static const QRegularExpression kPort(QStringLiteral("^COM([1-8]):?$"),
                                          QRegularExpression::CaseInsensitiveOption);
    const auto match = kPort.match(name);
    return match.hasMatch() ? device(match.captured(1).toInt()) : withoutColon(name);
}

QString PortNames::optionDevice(const QString& name) const {
    QString device = deviceNamed(name);
    if (device.isEmpty())
        throw RuntimeFailure(FailureKind::InvalidArgument,
                             QStringLiteral("--port %1: that port has no device on this machine.").arg(name));
    if (const QString problem = networkProblem(device); !problem.isEmpty())
        throw RuntimeFailure(FailureKind::InvalidArgument, QStringLiteral("--port ") + problem);
    return device;
}

QStringList PortNames::candidates(int number) {
#ifdef Q_OS_WIN
    return {QStringLiteral("\\\\.\\COM%1").arg(number)};
#else
    const QString index = QString::number(number - 1);
    return {QStringLiteral("/dev/ttyUSB") + index, QStringLiteral("/dev/ttyACM") + index,
            QStringLiteral("/dev/ttyS") + index};
#endif
}

QString PortNames::variable(int number) {
    return QStringLiteral("ZRK_COM%1").arg(number);
}

std::pair<int, QString> PortNames::parseOverride(const QString& text) {
    const auto refuse = [&text](const QString& why) {
        throw RuntimeFailure(FailureKind::InvalidArgument,
                             QStringLiteral("--com %1: %2, as in --com 1=%3.")
                                 .arg(text, why, candidates(kLowest).constFirst()));
    };
    const qsizetype equals = text.indexOf(QLatin1Char('='));
    if (equals < 0)
        refuse(QStringLiteral("a port number, \"=\" and a device are expected"));
    bool isNumber = false;
    const int number = text.left(equals).toInt(&isNumber);
    if (!isNumber || !isPortNumber(number))
        refuse(QStringLiteral("the port number must be 1 to 8"));
    QString device = text.mid(equals + 1);
    if (device.isEmpty())
        refuse(QStringLiteral("the device is missing"));
    if (const QString problem = networkProblem(device); !problem.isEmpty())
        throw RuntimeFailure(FailureKind::InvalidArgument,
                             QStringLiteral("--com %1=%2").arg(QString::number(number), problem));
    return {number, std::move(device)};
}

} // namespace zrk
