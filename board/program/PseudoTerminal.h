#pragma once

#include "board/program/FileDescriptor.h"

#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace zrkboard {

// The serial adapter: a pseudo-terminal whose slave is the device a loader opens. The slave is held open here
// as well, so that its output can be stopped as a full driver would, and the master sees no hang-up between
// two loaders. Destroying it pulls the adapter: a loader that has the device open sees a hang-up.
class PseudoTerminal {
  public:
    // Throws std::system_error if the system has no pseudo-terminal left.
    PseudoTerminal();

    [[nodiscard]] const std::string& devicePath() const { return m_devicePath; }
    // Returns the master, non-blocking, for poll().
    [[nodiscard]] int masterFd() const { return m_master.get(); }

    // Reads what the loader has written, no more than `most` bytes; the rest stays where it is.
    [[nodiscard]] std::vector<std::uint8_t> read(std::size_t most);
    // Writes to the loader's side; returns how many bytes it had room for.
    [[nodiscard]] std::size_t write(std::span<const std::uint8_t> bytes);

    // Stops or restarts the loader's writing. An unread pseudo-terminal takes 20 KiB before a writer waits;
    // one that is read takes as much again each time.
    void stopLoader(bool stopped);

    // Returns whether the loader has switched on XON/XOFF, as it does in terminal mode.
    [[nodiscard]] bool inTerminalMode() const;

    // Cleans up after a loader that has closed the device: drops what it has not read, and takes back its
    // exclusive use, which would last because the device stays open here.
    void forgetLoader();

  private:
    FileDescriptor m_master;
    FileDescriptor m_slave;
    std::string m_devicePath;
    bool m_stopped = false;
};

} // namespace zrkboard
