#pragma once

#include <unistd.h>
#include <utility>

namespace zrkboard {

// Owns an open file descriptor, or none (-1).
class FileDescriptor {
  public:
    explicit FileDescriptor(int fd = -1) : m_fd(fd) {}
    FileDescriptor(FileDescriptor&& other) noexcept : m_fd(std::exchange(other.m_fd, -1)) {}
    FileDescriptor& operator=(FileDescriptor&& other) noexcept {
        std::swap(m_fd, other.m_fd);
        return *this;
    }
    ~FileDescriptor() {
        if (m_fd >= 0)
            ::close(m_fd);
    }

    [[nodiscard]] int get() const { return m_fd; }
    [[nodiscard]] bool isOpen() const { return m_fd >= 0; }

  private:
    int m_fd;
};

} // namespace zrkboard
