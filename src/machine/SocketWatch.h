#pragma once

#include <boost/asio/ip/tcp.hpp>

#include <chrono>
#include <cstddef>

namespace zrk {

/// Lets the connection fail when nothing comes from the peer, neither answers to probes nor confirmations,
/// for 7 to 9 s. There is one implementation per system.
void watchForDeadPeer(boost::asio::ip::tcp::socket& socket) noexcept;

/// Bytes that the peer has not confirmed yet, as far as the system tells.
[[nodiscard]] std::size_t unconfirmedBytes(boost::asio::ip::tcp::socket::native_handle_type handle) noexcept;

/// False when nothing comes in that time. Blocks.
[[nodiscard]] bool waitReadable(boost::asio::ip::tcp::socket::native_handle_type handle,
                                std::chrono::milliseconds limit) noexcept;

} // namespace zrk
