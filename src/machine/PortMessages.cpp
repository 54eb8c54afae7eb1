#include "machine/PortMessages.h"

#include "files/PrintableText.h"
#include "machine/NativePort.h"
#include "machine/PortNames.h"
#include "platform/SecondsText.h"
#include "platform/SerialPort.h"

namespace zrk::port_messages {
namespace {

QString permissionDenied(const QString& group) {
    if (group.isEmpty())
        return QStringLiteral("permission denied. Ask the administrator for access to the device.");
    return QStringLiteral("permission denied. The device belongs to the group %1; "
                          "add yourself to it and log in again.")
        .arg(group);
}

// Adapts the system's text, which begins with a capital letter, to the middle of a sentence.
QString withinSentence(QString text) {
    if (!text.isEmpty())
        text[0] = text[0].toLower();
    while (text.endsWith(QLatin1Char('.')) || text.endsWith(QLatin1Char('\n')) ||
           text.endsWith(QLatin1Char('\r')))
        text.chop(1);
    return text;
}

QString whyAndWhatToDo(const OpenResult& result) {
    switch (result.fault) {
    case OpenFault::NoSuchDevice:
        return QStringLiteral("no such device. Plug the adapter in, or choose another port.");
    case OpenFault::InUse:
        if (!result.reason.empty())
            return QStringLiteral("it is the terminal of %1. Choose the board's port, or end that program.")
                .arg(printableText(QString::fromLocal8Bit(result.reason)));
        if (!result.user.empty())
            return QStringLiteral("the device is in use by %1. Close that program and try again.")
                .arg(printableText(QString::fromStdString(result.user)));
        return QStringLiteral("the device is in use. Close the program that uses it and try again.");
    case OpenFault::PermissionDenied:
        return permissionDenied(QString::fromLocal8Bit(result.group));
    case OpenFault::NotASerialPort:
        return QStringLiteral("it is not a serial port. Choose a device such as %1.")
            .arg(PortNames::candidates(PortNames::kLowest).constFirst());
    case OpenFault::Scarce:
        return QStringLiteral("%1. End other programs and try again.")
            .arg(withinSentence(QString::fromLocal8Bit(result.reason)));
    case OpenFault::None:
    case OpenFault::Other:
        break;
    }
    return QStringLiteral("%1. Check the adapter, or choose another port.")
        .arg(withinSentence(QString::fromLocal8Bit(result.reason)));
}

} // namespace

QString portName(int number, const QString& device) {
    return QStringLiteral("COM%1 (%2)").arg(QString::number(number), printableText(device));
}

QString noSuchNumber(int number) {
    return QStringLiteral("Cannot open COM%1: port numbers go from %2 to %3. Choose one of these.")
        .arg(number)
        .arg(PortNames::kLowest)
        .arg(PortNames::kHighest);
}

QString noDevice(int number) {
    return QStringLiteral("Cannot open COM%1: none of %2 exists. "
                          "Plug the adapter in, or set %3 to the device.")
        .arg(QString::number(number), PortNames::candidates(number).join(QStringLiteral(", ")),
             PortNames::variable(number));
}

QString fallback(int number, const QString& device) {
    QStringList adapters = PortNames::candidates(number);
    adapters.removeAll(device);
    return QStringLiteral("COM%1 is the built-in port %2, since no adapter (%3) is there.")
        .arg(QString::number(number), device, adapters.join(QStringLiteral(", ")));
}

QString alsoUsed(const QString& port, const QString& user) {
    return QStringLiteral(
               "%1 is also in use by %2, and each byte from the board reaches only one of the two. "
               "End that program, or choose another port.")
        .arg(port, printableText(user));
}

QString badName(int number, const QString& problem) {
    return QStringLiteral("Cannot open COM%1: %2").arg(QString::number(number), problem);
}

QString cannotOpen(const QString& port, const OpenResult& result) {
    return QStringLiteral("Cannot open %1: %2").arg(port, whyAndWhatToDo(result));
}

QString settingsRefused(const QString& port, const LineSettings& settings) {
    return QStringLiteral("Cannot open %1: the device cannot do %2,%3,%4,%5. Use another adapter.")
        .arg(port)
        .arg(settings.baudRate)
        .arg(QLatin1Char(settings.parity))
        .arg(settings.dataBits)
        .arg(settings.stopBits);
}

QString noModemLine(const QString& port) {
    return QStringLiteral(
               "Cannot open %1: the device cannot switch DTR or RTS. Use another adapter, or leave out "
               "--dtr and --rts.")
        .arg(port);
}

QString noDtr(const QString& port) {
    return QStringLiteral("%1 has no DTR to be pulsed. Use another adapter, or a server with RFC 2217.")
        .arg(port);
}

QString gone(const QString& port, const QString& reason) {
    return QStringLiteral("%1 is gone: %2. Plug the adapter in again and start over.")
        .arg(port, withinSentence(reason));
}

QString stalled(const QString& port, std::chrono::milliseconds limit) {
    return QStringLiteral("%1 takes no more data: nothing has gone out for %2 s. "
                          "Check the cable and the board.")
        .arg(port, secondsText(limit));
}

} // namespace zrk::port_messages
