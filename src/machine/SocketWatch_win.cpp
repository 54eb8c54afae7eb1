#include "machine/SocketWatch.h"

#include <array>
#include <mstcpip.h>
#include <winsock2.h>
#include <ws2tcpip.h>

// What the compiler's headers leave out.
#ifndef TCP_MAXRT
#define TCP_MAXRT 5
#endif

namespace zrk {

void watchForDeadPeer(boost::asio::ip::tcp::socket& socket) noexcept {
    // The system's ten probes with 600 ms between them end as soon as three with 2 s.
    tcp_keepalive probes{1, 3000, 600};
    DWORD returned = 0;
    (void)::WSAIoctl(socket.native_handle(), SIO_KEEPALIVE_VALS, &probes, sizeof probes, nullptr, 0,
                     &returned, nullptr, nullptr);
    DWORD seconds = 7;
    (void)::setsockopt(socket.native_handle(), IPPROTO_TCP, TCP_MAXRT,
                       reinterpret_cast<const char*>(&seconds), sizeof seconds);
}

std::size_t unconfirmedBytes(SOCKET /*handle*/) noexcept {
    return 0; // what it keeps leaves within the round trip, and the pace knows the line
}

void endInOrder(boost::asio::ip::tcp::socket& socket, std::chrono::milliseconds limit) noexcept {
    boost::system::error_code error;
    socket.shutdown(boost::asio::ip::tcp::socket::shutdown_send, error);
    socket.non_blocking(true, error);
    const auto end = std::chrono::steady_clock::now() + limit;
    std::array<char, 1024> rest{};
    while (!error) {
        const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(
            end - std::chrono::steady_clock::now());
        WSAPOLLFD entry{socket.native_handle(), POLLRDNORM, 0};
        if (left.count() <= 0 || ::WSAPoll(&entry, 1, static_cast<int>(left.count())) != 1)
            return;
        if (socket.read_some(boost::asio::buffer(rest), error) == 0)
            return;
    }
}

} // namespace zrk
