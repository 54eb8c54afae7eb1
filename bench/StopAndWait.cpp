#include "StopAndWait.h"

#include "AckLine.h"
#include "board/program/FileDescriptor.h"

#include <boost/crc.hpp>

#include <fcntl.h>
#include <poll.h>
#include <stdexcept>
#include <unistd.h>

namespace zrkbench {
namespace {

constexpr std::size_t kImageSize = 32768;
constexpr std::uint8_t kAck = 0x06;

using Bytes = std::vector<std::uint8_t>;

std::uint16_t crcOf(std::span<const std::uint8_t> data) {
    boost::crc_xmodem_t crc;
    crc.process_bytes(data.data(), data.size());
    return crc.checksum();
}

void writeAll(int fd, const Bytes& bytes) {
    for (std::size_t done = 0; done < bytes.size();) {
        const ssize_t count = ::write(fd, bytes.data() + done, bytes.size() - done);
        if (count <= 0)
            throw std::runtime_error("the line takes no more");
        done += static_cast<std::size_t>(count);
    }
}

std::uint8_t readOne(int fd) {
    pollfd ready{fd, POLLIN, 0};
    std::uint8_t byte = 0;
    if (::poll(&ready, 1, 5000) != 1 || ::read(fd, &byte, 1) != 1)
        throw std::runtime_error("the far end does not answer");
    return byte;
}

} // namespace

Bytes StopAndWait::block(std::size_t number, std::span<const std::uint8_t> image) const {
    const auto part = image.subspan((number - 1) * data, data);
    if (start == 0)
        return {part.begin(), part.end()};
    const auto low = static_cast<std::uint8_t>(number);
    Bytes block{start, low, static_cast<std::uint8_t>(~low)};
    block.insert(block.end(), part.begin(), part.end());
    const std::uint16_t crc = crcOf(part);
    block.push_back(static_cast<std::uint8_t>(crc >> 8));
    block.push_back(static_cast<std::uint8_t>(crc));
    return block;
}

bool StopAndWait::isRight(std::span<const std::uint8_t> block) const {
    if (start == 0)
        return true;
    return block[0] == start && block[1] + block[2] == 0xFF && crcOf(block.subspan(3)) == 0;
}

double rateOf(const StopAndWait& protocol, std::chrono::milliseconds latency) {
    const AckLine line(
        protocol.blockSize(), [&protocol](auto block) { return protocol.isRight(block); }, latency);
    const zrkboard::FileDescriptor port(::open(line.devicePath().c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC));
    const Bytes image(kImageSize, 0xA5);
    const auto begin = std::chrono::steady_clock::now();
    for (std::size_t number = 1; number <= image.size() / protocol.data; ++number) {
        writeAll(port.get(), protocol.block(number, image));
        if (readOne(port.get()) != kAck)
            throw std::runtime_error("the far end refuses a block");
    }
    const std::chrono::duration<double> took = std::chrono::steady_clock::now() - begin;
    return static_cast<double>(image.size()) / took.count();
}

} // namespace zrkbench
