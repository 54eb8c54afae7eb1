#pragma once

#include <boost/asio/ip/tcp.hpp>

#include <cstddef>

namespace zrk {

/// How long a peer may be silent on an open connection before it counts as dead: 3 s until the first of three
/// probes, 2 s between them, and the same 9 s for bytes that nobody confirms.
/// There is one implementation per system.
void watchForDeadPeer(boost::asio::ip::tcp::socket& socket) noexcept;

/// Bytes that the peer has not confirmed yet, as far as the system tells.
[[nodiscard]] std::size_t unconfirmedBytes(boost::asio::ip::tcp::socket::native_handle_type handle) noexcept;

} // namespace zrk
