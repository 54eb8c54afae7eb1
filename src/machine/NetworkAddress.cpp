#include "machine/NetworkAddress.h"

#include "platform/RuntimeFailure.h"

#include <QRegularExpression>

#include <boost/asio/ip/address_v6.hpp>

namespace zrk {
namespace {

[[noreturn]] void refuse(const QString& name, const QString& why) {
    throw RuntimeFailure(
        FailureKind::InvalidArgument,
        QStringLiteral("%1: %2, as in tcp:rack7:3000, tcp:[::1]:3000 or rfc2217:rack7:3001.").arg(name, why));
}

void checkHost(const QString& name, const QString& host, bool inBrackets) {
    static const QRegularExpression kUnfit(QStringLiteral("[\\s:\\[\\]/@]"));
    if (host.isEmpty())
        refuse(name, QStringLiteral("the host is missing"));
    boost::system::error_code error;
    if (inBrackets)
        (void)boost::asio::ip::make_address_v6(host.toStdString(), error);
    if (error)
        refuse(name, QStringLiteral("in the brackets an IPv6 address is expected"));
    if (!inBrackets && host.contains(kUnfit))
        refuse(name,
               QStringLiteral("a host, \":\" and a port number are expected, an IPv6 address in brackets"));
}

} // namespace

std::optional<NetworkAddress> NetworkAddress::parse(const QString& name) {
    static const QRegularExpression kScheme(QStringLiteral("^(tcp|rfc2217):"),
                                            QRegularExpression::CaseInsensitiveOption);
    const auto scheme = kScheme.match(name);
    if (!scheme.hasMatch())
        return {};
    const QString place = name.mid(scheme.capturedLength());
    const qsizetype colon = place.lastIndexOf(QLatin1Char(':'));
    if (colon <= place.lastIndexOf(QLatin1Char(']')))
        refuse(name, QStringLiteral("the port number is missing"));
    QString host = place.left(colon);
    const bool inBrackets = host.startsWith(QLatin1Char('[')) && host.endsWith(QLatin1Char(']'));
    if (inBrackets)
        host = host.mid(1, host.size() - 2);
    checkHost(name, host, inBrackets);
    static const QRegularExpression kNumber(QStringLiteral("^[0-9]{1,5}$"));
    const QString digits = place.mid(colon + 1);
    const uint port = kNumber.match(digits).hasMatch() ? digits.toUInt() : 0;
    constexpr uint kHighestPort = 65535;
    if (port < 1 || port > kHighestPort)
        refuse(name, QStringLiteral("the port number goes from 1 to 65535"));
    const bool raw = scheme.captured(1).compare(QLatin1String("tcp"), Qt::CaseInsensitive) == 0;
    return NetworkAddress{raw ? Protocol::Raw : Protocol::Rfc2217, host, static_cast<std::uint16_t>(port)};
}

QString NetworkAddress::place() const {
    const QString shown = host.contains(QLatin1Char(':')) ? QLatin1Char('[') + host + QLatin1Char(']') : host;
    return shown + QLatin1Char(':') + QString::number(port);
}

bool isOnNetwork(const QString& name) {
    return name.startsWith(QLatin1String("tcp:")) || name.startsWith(QLatin1String("rfc2217:"));
}

QString networkProblem(const QString& name) {
    try {
        (void)NetworkAddress::parse(name);
        return {};
    } catch (const RuntimeFailure& failure) {
        return failure.description();
    }
}

} // namespace zrk
