#include "board/program/FileMemory.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <stdexcept>
#include <sys/stat.h>

namespace zrkboard {

namespace {

[[noreturn]] void fail(const std::string& path, const std::string& why) {
    throw std::runtime_error("cannot use " + path + " as a memory: " + why);
}

} // namespace

FileMemory::FileMemory(std::string path, std::uint64_t size, std::uint8_t filling)
    : Memory(0, size), m_path(std::move(path)),
      m_file(::open(m_path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0666)) {
    if (!m_file.isOpen())
        fail(m_path, std::strerror(errno));
    struct stat status {};
    if (::fstat(m_file.get(), &status) != 0 || !S_ISREG(status.st_mode))
        fail(m_path, "it is not a regular file");
    const auto length = static_cast<std::uint64_t>(status.st_size);
    if (length != 0 && length != size)
        fail(m_path, "it has " + std::to_string(length) + " bytes instead of " + std::to_string(size) +
                         "; name one that is missing or empty to get a new memory");
    if (length == 0)
        makeFilled(filling);
}

void FileMemory::makeFilled(std::uint8_t filling) {
    try {
        fill(filling);
    } catch (const std::runtime_error&) {
        // A part of one would be refused the next time.
        std::error_code error;
        std::filesystem::resize_file(m_path, 0, error);
        throw;
    }
}

void FileMemory::fill(std::uint8_t value) {
    std::uint64_t offset = 0;
    const std::vector<std::uint8_t> block(1024ULL * 1024, value);
    while (offset < size()) {
        const std::uint64_t part = std::min<std::uint64_t>(block.size(), size() - offset);
        writeAt(offset, std::span(block).first(part));
        offset += part;
    }
}

void FileMemory::readAt(std::uint64_t offset, std::span<std::uint8_t> bytes) const {
    while (!bytes.empty()) {
        const ssize_t count = ::pread(m_file.get(), bytes.data(), bytes.size(), static_cast<off_t>(offset));
        if (count <= 0)
            fail(m_path, count < 0 ? std::strerror(errno) : "it has been cut off");
        bytes = bytes.subspan(static_cast<std::size_t>(count));
        offset += static_cast<std::uint64_t>(count);
    }
}

void FileMemory::writeAt(std::uint64_t offset, std::span<const std::uint8_t> bytes) {
    while (!bytes.empty()) {
        const ssize_t count = ::pwrite(m_file.get(), bytes.data(), bytes.size(), static_cast<off_t>(offset));
        if (count <= 0)
            fail(m_path, std::strerror(errno));
        bytes = bytes.subspan(static_cast<std::size_t>(count));
        offset += static_cast<std::uint64_t>(count);
    }
}

} // namespace zrkboard
