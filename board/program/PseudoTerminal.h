#pragma once

#include "board/program/FileDescriptor.h"

#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace zrkboard {

// The serial adapter: a pseudo-terminal whose slave is the device a loader opens. The slave is held open here
// as well: its output can then be stopped as a full driver would, and the master sees no hang-up between two
// loaders. Destroying it pulls the adapter: a loader that has the device open sees a hang-up.
class PseudoTerminal {
  public:
    // Throws std::system_error when the system has no pseudo-terminal to give.
    PseudoTerminal();

    [[nodiscard]] const std::string& devicePath() const { return m_devicePath; }
    // For poll(); non-blocking.
    [[nodiscard]] int masterFd() const { return m_master.get(); }

    // What the loader has written, no more than `most` bytes; the rest stays where it is.
    [[nodiscard]] std::vector<std::uint8_t> read(std::size_t most);
    // How many bytes the loader's side had room for.
    [[nodiscard]] std::size_t write(std::span<const std::uint8_t> bytes);

    // Stops or restarts the loader's writing. A pseudo-terminal that nobody reads takes 20 KiB before a
    // writer waits; one that is read takes as much again each time.
    void stopLoader(bool stopped);

    // The loader has switched on XON/XOFF, so someone looks at a terminal.
    [[nodiscard]] bool inTerminalMode() const;

    // The loader has closed the device: drops what it has not read, and takes back its exclusive use, which
    // would outlive it because the device stays open here.
    void forgetLoader();

  private:
    FileDescriptor m_master;
    FileDescriptor m_slave;
    std::string m_devicePath;
    bool m_stopped = false;
};

} // namespace zrkboard
