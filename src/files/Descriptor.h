#pragma once

#include <unistd.h>
#include <utility>

namespace zrk {

/// A file descriptor of POSIX, closed unless it was released. A negative number means no file.
class Descriptor {
  public:
    explicit Descriptor(int number) : m_number(number) {}
    ~Descriptor() {
        if (m_number >= 0)
            ::close(m_number);
    }
    Descriptor(Descriptor&& other) noexcept : m_number(other.release()) {}
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    [[nodiscard]] int number() const { return m_number; }
    [[nodiscard]] int release() { return std::exchange(m_number, -1); }

  private:
    int m_number;
};

} // namespace zrk
