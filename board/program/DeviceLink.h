#pragma once

#include <filesystem>
#include <string>

namespace zrkboard {

// A symbolic link to the device under a name that stays the same; gone with this object.
class DeviceLink {
  public:
    // Replaces a link of an earlier run but no file of another kind. Throws std::runtime_error.
    DeviceLink(std::filesystem::path link, std::string devicePath);
    ~DeviceLink();
    DeviceLink(const DeviceLink&) = delete;
    DeviceLink& operator=(const DeviceLink&) = delete;

  private:
    std::filesystem::path m_link;
    std::string m_devicePath;
};

} // namespace zrkboard
