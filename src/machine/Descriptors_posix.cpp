#include "machine/Descriptors.h"

#include <cerrno>
#include <fcntl.h>
#include <initializer_list>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

namespace zrk {

void fillMissingStreams() {
    for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        if (::fcntl(stream, F_GETFD) >= 0 || errno != EBADF)
            continue;
        // In the wrong direction, so that lost output is detected. The lowest free number is the stream's.
        (void)::open("/dev/null", stream == STDIN_FILENO ? O_WRONLY : O_RDONLY);
    }
}

std::ptrdiff_t writeSome(int descriptor, const char* bytes, std::size_t count) {
    while (true) {
        const ssize_t written = ::write(descriptor, bytes, count);
        if (written >= 0)
            return written;
        if (errno == EAGAIN || errno == EWOULDBLOCK) { // another process has set this on the shared pipe
            pollfd entry{descriptor, POLLOUT, 0};
            (void)::poll(&entry, 1, -1);
        } else if (errno != EINTR) {
            return -1;
        }
    }
}

bool leadToOneFile(int one, int other) {
    struct stat first {};
    struct stat second {};
    return ::fstat(one, &first) == 0 && ::fstat(other, &second) == 0 && first.st_dev == second.st_dev &&
           first.st_ino == second.st_ino;
}

} // namespace zrk
