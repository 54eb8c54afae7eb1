#include "machine/SocketWatch.h"

#include <mstcpip.h>
#include <winsock2.h>
#include <ws2tcpip.h>

// Definitions that the compiler's headers lack.
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

std::size_t unconfirmedBytes(boost::asio::ip::tcp::socket::native_handle_type /*handle*/) noexcept {
    return 0; // what it keeps leaves within the round trip, and the pace models the line
}

bool waitReadable(boost::asio::ip::tcp::socket::native_handle_type handle,
                  std::chrono::milliseconds limit) noexcept {
    WSAPOLLFD entry{handle, POLLRDNORM, 0};
    return ::WSAPoll(&entry, 1, static_cast<int>(limit.count())) == 1;
}

} // namespace zrk
