#pragma once

#include <boost/asio/ip/tcp.hpp>

#include <chrono>
#include <cstddef>

namespace zrk {

/// Makes the connection fail if nothing comes from the peer, neither answers to probes nor confirmations, for
/// 7 to 9 s. There is one implementation per system.
void watchForDeadPeer(boost::asio::ip::tcp::socket& socket) noexcept;

/// Returns how many bytes the peer has not confirmed yet, as far as the system reports them.
[[nodiscard]] std::size_t unconfirmedBytes(boost::asio::ip::tcp::socket::native_handle_type handle) noexcept;

/// Blocks until something comes; returns false if nothing does in that time.
[[nodiscard]] bool waitReadable(boost::asio::ip::tcp::socket::native_handle_type handle,
                                std::chrono::milliseconds limit) noexcept;

} // namespace zrk
