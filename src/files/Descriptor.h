#pragma once

#include <unistd.h>
#include <utility>

namespace zrk {

/// Closes a file descriptor of POSIX unless it was released. A negative number is none.
class Descriptor {
  public:
    explicit Descriptor(int number) : m_number(number) {}
    ~Descriptor() {
        if (m_number >= 0)
            ::close(m_number);
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    [[nodiscard]] int number() const { return m_number; }
    [[nodiscard]] int release() { return std::exchange(m_number, -1); }

  private:
    int m_number;
};

} // namespace zrk
