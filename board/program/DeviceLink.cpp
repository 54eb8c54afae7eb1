#include "board/program/DeviceLink.h"

#include <stdexcept>
#include <utility>

namespace zrkboard {

namespace fs = std::filesystem;

DeviceLink::DeviceLink(fs::path link, std::string devicePath)
    : m_link(std::move(link)), m_devicePath(std::move(devicePath)) {
    const std::string context = "cannot make the link " + m_link.string() + ": ";
    std::error_code error;
    const auto status = fs::symlink_status(m_link, error);
    if (fs::exists(status) && !fs::is_symlink(status))
        throw std::runtime_error(context + "there is a file of that name, and it is no link");
    fs::remove(m_link, error);
    fs::create_symlink(m_devicePath, m_link, error);
    if (error)
        throw std::runtime_error(context + error.message());
}

DeviceLink::~DeviceLink() {
    // Another board may have taken the name over by now.
    std::error_code error;
    if (fs::read_symlink(m_link, error) == m_devicePath && !error)
        fs::remove(m_link, error);
}

} // namespace zrkboard
