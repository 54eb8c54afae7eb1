#pragma once

#include "board/program/FileDescriptor.h"

#include <filesystem>
#include <string>

namespace zrkboard {

// A symbolic link to the device under a name that stays the same; removed with this object.
class DeviceLink {
  public:
    // Replaces a link of an earlier run, but neither the link of a running board nor any other link or file.
    // Throws std::runtime_error.
    DeviceLink(std::filesystem::path link, std::string devicePath);
    ~DeviceLink();
    DeviceLink(const DeviceLink&) = delete;
    DeviceLink& operator=(const DeviceLink&) = delete;

  private:
    void claim();
    [[nodiscard]] bool isOurs() const;
    [[noreturn]] void fail(const std::string& why) const;

    std::filesystem::path m_link;
    std::string m_devicePath;
    FileDescriptor m_claim; // gone at the end of the process, however that ends
};

} // namespace zrkboard
