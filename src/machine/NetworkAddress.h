#pragma once

#include <QString>

#include <cstdint>
#include <optional>

namespace zrk {

/// The address of a serial port at a serial server: "tcp:HOST:PORT", whose connection carries only the line's
/// bytes, or "rfc2217:HOST:PORT", which also carries line settings and DTR. An IPv6 address is in brackets.
struct NetworkAddress {
    enum class Protocol { Raw, Rfc2217 };

    Protocol protocol = Protocol::Raw;
    QString host{}; ///< without brackets
    std::uint16_t port = 0;

    /// Reads a name; empty for a device of this machine. Throws RuntimeFailure (InvalidArgument) that says
    /// what is wrong with a malformed one.
    [[nodiscard]] static std::optional<NetworkAddress> parse(const QString& name);

    /// Returns "HOST:PORT", with the brackets.
    [[nodiscard]] QString place() const;
};

/// Returns whether a device's name begins like that of a port on the network, well-formed or not.
[[nodiscard]] bool isOnNetwork(const QString& name);

/// Returns what is wrong with a device's name that is meant as that of a port on the network, and what to
/// write; "" if nothing is.
[[nodiscard]] QString networkProblem(const QString& name);

} // namespace zrk
