#pragma once

#include "board/program/FileDescriptor.h"

#include <string>

namespace zrkboard {

// Notices when loaders open and close a device. A pseudo-terminal whose slave is held open elsewhere tells
// its master nothing of that, so the file system is asked.
class UseWatch {
  public:
    // Begins with nobody counted. Throws std::system_error.
    explicit UseWatch(const std::string& devicePath);

    // For poll(): readable when update() has something to do.
    [[nodiscard]] int fd() const { return m_inotify.get(); }

    // Takes notice of what has happened. opened and closed tell whether the device went from unused to used
    // and the other way round since the last call; both may be true.
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
