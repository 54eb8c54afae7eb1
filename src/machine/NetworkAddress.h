#pragma once

#include <QString>

#include <cstdint>
#include <optional>

namespace zrk {

/// A serial port behind a serial server: "tcp:HOST:PORT", whose connection carries the line's bytes and
/// nothing else, or "rfc2217:HOST:PORT", which carries line settings and DTR as well. An IPv6 address stands
/// in brackets.
struct NetworkAddress {
    enum class Protocol { Raw, Rfc2217 };

    Protocol protocol = Protocol::Raw;
    QString host{}; ///< without brackets
    std::uint16_t port = 0;

    /// Nothing for the name of a device of this machine. Throws RuntimeFailure (InvalidArgument) that says
    /// what is wrong with a malformed one.
    [[nodiscard]] static std::optional<NetworkAddress> parse(const QString& name);

    /// "HOST:PORT", with the brackets.
    [[nodiscard]] QString place() const;
};

/// True for a device's name that begins like that of a port on the network, well-formed or not.
[[nodiscard]] bool isOnNetwork(const QString& name);

/// What is wrong with a device's name that is meant as that of a port on the network, and what to write; ""
/// for nothing.
[[nodiscard]] QString networkProblem(const QString& name);

} // namespace zrk
