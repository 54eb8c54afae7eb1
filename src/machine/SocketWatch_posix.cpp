#include "machine/SocketWatch.h"

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

bool waitReadable(int handle, std::chrono::milliseconds limit) noexcept {
    pollfd entry{handle, POLLIN, 0};
    return ::poll(&entry, 1, static_cast<int>(limit.count())) == 1;
}

} // namespace zrk
