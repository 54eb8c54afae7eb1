#include "machine/SocketWatch.h"

#include <array>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <sys/socket.h>

#ifdef __linux__
#include <linux/sockios.h>
#endif

namespace zrk {
namespace {

void set(int socket, int level, int option, int value) {
    (void)::setsockopt(socket, level, option, &value, sizeof value);
}

} // namespace

void watchForDeadPeer(boost::asio::ip::tcp::socket& socket) noexcept {
    const int handle = socket.native_handle();
    set(handle, SOL_SOCKET, SO_KEEPALIVE, 1);
#ifdef __linux__
    constexpr int kIdleSeconds = 3;
    constexpr int kBetweenSeconds = 2;
    constexpr int kProbes = 3;
    constexpr int kUnconfirmedMilliseconds = 7000;
    set(handle, IPPROTO_TCP, TCP_KEEPIDLE, kIdleSeconds);
    set(handle, IPPROTO_TCP, TCP_KEEPINTVL, kBetweenSeconds);
    set(handle, IPPROTO_TCP, TCP_KEEPCNT, kProbes);
    set(handle, IPPROTO_TCP, TCP_USER_TIMEOUT, kUnconfirmedMilliseconds);
#endif
}

std::size_t unconfirmedBytes(int handle) noexcept {
#ifdef SIOCOUTQ
    int queued = 0;
    if (::ioctl(handle, SIOCOUTQ, &queued) == 0 && queued > 0)
        return static_cast<std::size_t>(queued);
#else
    (void)handle;
#endif
    return 0;
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
        pollfd entry{socket.native_handle(), POLLIN, 0};
        if (left.count() <= 0 || ::poll(&entry, 1, static_cast<int>(left.count())) != 1)
            return;
        if (socket.read_some(boost::asio::buffer(rest), error) == 0)
            return;
    }
}

} // namespace zrk
