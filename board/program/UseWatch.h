#pragma once

#include "board/program/FileDescriptor.h"

#include <string>

namespace zrkboard {

// A count of a device's openings. The master of a pseudo-terminal whose slave is held open elsewhere learns
// nothing of them, so this asks the file system.
class UseWatch {
  public:
    // Begins with a count of 0. Throws std::system_error.
    explicit UseWatch(const std::string& devicePath);

    // Returns a descriptor for poll(): readable if update() has something to do.
    [[nodiscard]] int fd() const { return m_inotify.get(); }

    // Updates the count. opened and closed are whether the device went from unused to used and the other way
    // round since the last call; both may be true.
    struct Change {
        bool opened = false;
        bool closed = false;
    };
    [[nodiscard]] Change update();

    [[nodiscard]] bool inUse() const { return m_users > 0; }

  private:
    FileDescriptor m_inotify;
    unsigned m_users = 0;
};

} // namespace zrkboard
