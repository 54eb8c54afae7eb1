#include "board/program/MemoryDump.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <stdexcept>

namespace zrkboard {

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
        std::filesystem::resize_file(path, memory.size(), error);
    if (!file || error)
        throw std::runtime_error("cannot write the memory dump " + path);
}

} // namespace zrkboard
