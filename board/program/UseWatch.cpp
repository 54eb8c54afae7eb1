#include "board/program/UseWatch.h"

#include <array>
#include <cerrno>
#include <cstring>
#include <sys/inotify.h>
#include <system_error>

namespace zrkboard {

UseWatch::UseWatch(const std::string& devicePath) : m_inotify(::inotify_init1(IN_NONBLOCK | IN_CLOEXEC)) {
    if (!m_inotify.isOpen() ||
        ::inotify_add_watch(m_inotify.get(), devicePath.c_str(), IN_OPEN | IN_CLOSE) < 0)
        throw std::system_error(errno, std::generic_category(), "cannot watch " + devicePath);
}

UseWatch::Change UseWatch::update() {
    Change change;
    std::array<char, 4096> buffer{};
    for (ssize_t length = 0; (length = ::read(m_inotify.get(), buffer.data(), buffer.size())) > 0;) {
        for (ssize_t offset = 0; offset < length;) {
            inotify_event event{};
            std::memcpy(&event, buffer.data() + offset, sizeof event);
            offset += static_cast<ssize_t>(sizeof event + event.len);
            if ((event.mask & IN_OPEN) != 0 && ++m_users == 1)
                change.opened = true;
            if ((event.mask & IN_CLOSE) != 0 && m_users > 0 && --m_users == 0)
                change.closed = true;
        }
    }
    return change;
}

} // namespace zrkboard
