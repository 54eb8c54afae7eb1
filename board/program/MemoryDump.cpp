#include "board/program/MemoryDump.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <unistd.h>

namespace zrkboard {

namespace fs = std::filesystem;

void checkDumpFile(const std::string& path) {
    const auto fail = [&path](const std::string& why) {
        throw std::runtime_error("cannot write a memory dump to " + path + ": " + why);
    };
    std::error_code error;
    const auto status = fs::status(path, error);
    if (fs::exists(status) && !fs::is_regular_file(status))
        fail("it is not a regular file");
    const fs::path parent = fs::path(path).parent_path();
    const fs::path folder = parent.empty() ? "." : parent;
    const bool writable =
        fs::exists(status) ? ::access(path.c_str(), W_OK) == 0 : ::access(folder.c_str(), W_OK | X_OK) == 0;
    if (!writable)
        fail(std::strerror(errno));
}

void dumpMemory(const Memory& memory, const std::string& path) {
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    constexpr std::uint64_t kBlock = 64ULL * 1024;
    for (std::uint64_t offset = 0; file && offset < memory.size(); offset += kBlock) {
        const auto block = memory.read(memory.base() + offset,
                                       static_cast<std::size_t>(std::min(kBlock, memory.size() - offset)));
        if (std::all_of(block.begin(), block.end(), [](std::uint8_t byte) { return byte == 0; }))
            continue;
        file.seekp(static_cast<std::streamoff>(offset));
        file.write(reinterpret_cast<const char*>(block.data()), static_cast<std::streamsize>(block.size()));
    }
    file.close();
    std::error_code error;
    if (file)
        fs::resize_file(path, memory.size(), error);
    if (!file || error)
        throw std::runtime_error("cannot write the memory dump " + path);
}

} // namespace zrkboard
