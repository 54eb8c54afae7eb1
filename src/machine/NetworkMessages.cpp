#include "machine/NetworkMessages.h"

#include "machine/NetworkAddress.h"

#include <boost/asio/error.hpp>

namespace zrk::network_messages {

namespace error = boost::asio::error;

namespace {

QString quoted(const std::string& text) {
    constexpr qsizetype kMost = 80;
    QString shown = QString::fromLatin1(QByteArray::fromStdString(text)).simplified().left(kMost);
    for (QChar& c : shown) {
        if (!c.isPrint())
            c = QLatin1Char('?');
    }
    return shown.isEmpty() ? QString() : QStringLiteral(" (\"%1\")").arg(shown);
}

QString whyAndWhatToDo(const NetworkAddress& address, const NetworkFailure& failure) {
    const QString place = address.place();
    const QString said = quoted(failure.detail);
    switch (failure.fault) {
    case NetworkFault::UnknownHost:
        return QStringLiteral("the host %1 is unknown%2. Check its spelling, or give its address.")
            .arg(address.host, said);
    case NetworkFault::Refused:
        return QStringLiteral("nothing listens at %1. Start the serial server, or correct the port number.")
            .arg(place);
    case NetworkFault::Unreachable:
        return QStringLiteral("there is no route to %1%2. Check this machine's network.").arg(place, said);
    case NetworkFault::NoAnswer:
        return QStringLiteral(
                   "%1 has not answered within 5 s. Check that the serial server is on and that no "
                   "firewall is in between.")
            .arg(place);
    case NetworkFault::InUse:
        return QStringLiteral("at the serial server %1 the port is in use%2. Close the other connection and "
                              "try again.")
            .arg(place, said);
    case NetworkFault::ClosedAtOnce:
        return QStringLiteral(
                   "the serial server at %1 closed the connection at once%2. Check its adapter and "
                   "its configuration.")
            .arg(place, said);
    case NetworkFault::NotRfc2217:
        return QStringLiteral(
                   "%1 does not speak RFC 2217. Use tcp:%1 for a raw port, or switch RFC 2217 on at "
                   "the server.")
            .arg(place);
    case NetworkFault::TelnetOnly:
        return QStringLiteral(
                   "%1 speaks Telnet, but not RFC 2217. Switch RFC 2217 on at the server, or make the "
                   "port raw there and use tcp:%1.")
            .arg(place);
    case NetworkFault::SettingsRefused:
        return QStringLiteral("the serial server at %1 refused %2. Use another adapter there, or a raw port "
                              "whose line is set up at the server.")
            .arg(place, QString::fromStdString(failure.detail));
    case NetworkFault::None:
    case NetworkFault::Other:
        break;
    }
    return QStringLiteral("connecting to %1 failed%2. Check host, port number and network.").arg(place, said);
}

} // namespace

NetworkFailure failureOf(const boost::system::error_code& code) {
    const std::string words = code.message();
    if (code == error::host_not_found || code == error::host_not_found_try_again || code == error::no_data)
        return {NetworkFault::UnknownHost, words};
    if (code == error::connection_refused)
        return {NetworkFault::Refused, words};
    if (code == error::network_unreachable || code == error::host_unreachable)
        return {NetworkFault::Unreachable, words};
    if (code == error::timed_out)
        return {NetworkFault::NoAnswer, words};
    return {NetworkFault::Other, words};
}

QString cannotOpen(const QString& port, const NetworkAddress& address, const NetworkFailure& failure) {
    return QStringLiteral("Cannot open %1: %2").arg(port, whyAndWhatToDo(address, failure));
}

QString givenUp(const QString& port) {
    return QStringLiteral("Connecting to %1 was cancelled.").arg(port);
}

QString gone(const QString& port, const NetworkAddress& address, const boost::system::error_code& code) {
    const QString place = address.place();
    if (code == error::eof || code == error::connection_reset || code == error::broken_pipe)
        return QStringLiteral(
                   "%1 is gone: the serial server at %2 closed the connection. Check the server and "
                   "its adapter, and start over.")
            .arg(port, place);
    if (code == error::timed_out || code == error::host_unreachable || code == error::network_unreachable)
        return QStringLiteral("%1 is gone: %2 no longer answers. Check the network and the serial server, "
                              "and start over.")
            .arg(port, place);
    return QStringLiteral("%1 is gone: the connection to %2 failed%3. Check the network, and start over.")
        .arg(port, place, quoted(code.message()));
}

QString refusedWhileOpen(const QString& port, const NetworkAddress& address, const std::string& what) {
    return QStringLiteral("%1 is gone: the serial server at %2 refused %3. Use another adapter there.")
        .arg(port, address.place(), QString::fromStdString(what));
}

QString telnetHint(const QString& device, const QByteArray& received) {
    constexpr unsigned char kCommand = 0xFF;
    constexpr unsigned char kFirstNegotiation = 0xFB;
    const auto byte = [&received](qsizetype i) { return static_cast<unsigned char>(received[i]); };
    if (received.size() < 3 || byte(0) != kCommand || byte(1) < kFirstNegotiation || byte(1) == kCommand)
        return {};
    if (!device.startsWith(QLatin1String("tcp:"), Qt::CaseInsensitive))
        return {};
    return QStringLiteral(
               "%1 speaks Telnet: it begins with 0xFF 0x%2, and it drops bytes 0xFF of an image. Write "
               "rfc2217:%3, or make the port raw at the server.")
        .arg(device, QString::number(byte(1), 16).toUpper(), device.section(QLatin1Char(':'), 1));
}

QString dtrRefused(const NetworkAddress& address) {
    return QStringLiteral("The serial server at %1 refused to switch DTR. Use an adapter there that has it.")
        .arg(address.place());
}

} // namespace zrk::network_messages
