#include "machine/NetworkAddress.h"

#include "files/PrintableText.h"
#include "platform/RuntimeFailure.h"

#include <QFileInfo>
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

/// Returns what to write instead of a name that other programs understand; "" for any other name.
QString rightNameFor(const QString& name) {
    static const QRegularExpression kSlashes(QStringLiteral("^(tcp|rfc2217)://+([^/]*)/*$"),
                                             QRegularExpression::CaseInsensitiveOption);
    static const QRegularExpression kOtherScheme(QStringLiteral("^(telnet|socket|raw):/*([^/]*)/*$"),
                                                 QRegularExpression::CaseInsensitiveOption);
    static const QRegularExpression kBare(
        QStringLiteral("^[a-z0-9_.-]{2,}:[0-9]{1,5}$|^\\[[0-9a-f:]+\\]:[0-9]{1,5}$"),
        QRegularExpression::CaseInsensitiveOption);
    if (const auto slashes = kSlashes.match(name); slashes.hasMatch())
        return QStringLiteral("write %1:%2, without slashes")
            .arg(slashes.captured(1).toLower(), slashes.captured(2));
    QString place;
    if (const auto other = kOtherScheme.match(name); other.hasMatch())
        place = other.captured(2);
    else if (kBare.match(name).hasMatch() && !isOnNetwork(name) && !QFileInfo::exists(name))
        place = name;
    return place.isEmpty()
               ? QString()
               : QStringLiteral(
                     "write tcp:%1 if the port is raw, or rfc2217:%1 if it is Telnet with RFC 2217")
                     .arg(place);
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
    return name.startsWith(QLatin1String("tcp:"), Qt::CaseInsensitive) ||
           name.startsWith(QLatin1String("rfc2217:"), Qt::CaseInsensitive);
}

QString networkProblem(const QString& name) {
    if (const QString right = rightNameFor(name); !right.isEmpty())
        return QStringLiteral("%1: %2.").arg(printableText(name), right);
    try {
        (void)NetworkAddress::parse(name);
        return {};
    } catch (const RuntimeFailure& failure) {
        return failure.description();
    }
}

} // namespace zrk
