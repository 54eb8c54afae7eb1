#pragma once

#include <QByteArray>
#include <QString>

#include <boost/system/error_code.hpp>

#include <string>

namespace zrk {

struct NetworkAddress;

enum class NetworkFault {
    None,
    UnknownHost,
    Refused,
    Unreachable,
    NoAnswer, ///< within the limit
    ClosedAtOnce,
    InUse,
    NotRfc2217, ///< it is silent, or not Telnet
    TelnetOnly, ///< it speaks Telnet without RFC 2217
    SettingsRefused,
    Other,
};

/// The cause of a failure to open a port on the network.
struct NetworkFailure {
    NetworkFault fault = NetworkFault::None;
    std::string detail{}; ///< the server's text, the setting it refused, or the system's own words
};

/// Messages about a port on the network: each says what failed, where, and what to do.
namespace network_messages {

[[nodiscard]] NetworkFailure failureOf(const boost::system::error_code& error);
[[nodiscard]] QString cannotOpen(const QString& port, const NetworkAddress& address,
                                 const NetworkFailure& failure);
[[nodiscard]] QString givenUp(const QString& port);
[[nodiscard]] QString gone(const QString& port, const NetworkAddress& address,
                           const boost::system::error_code& error);
[[nodiscard]] QString refusedWhileOpen(const QString& port, const NetworkAddress& address,
                                       const std::string& what);
/// Returns why the board did not understand, if a port that was opened as a raw one has begun to send with
/// bytes that only Telnet begins with; "" otherwise.
[[nodiscard]] QString telnetHint(const QString& device, const QByteArray& received);
[[nodiscard]] QString dtrRefused(const NetworkAddress& address);

} // namespace network_messages
} // namespace zrk
