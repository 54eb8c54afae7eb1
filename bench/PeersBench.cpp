#include "AckLine.h"
#include "BenchLoader.h"
#include "Benches.h"
#include "board/launcher/BoardProcess.h"
#include "board/program/FileDescriptor.h"

#include <boost/crc.hpp>

#include <array>
#include <cstdio>
#include <fcntl.h>
#include <poll.h>
#include <stdexcept>
#include <unistd.h>

namespace zrkbench {
namespace {

constexpr std::size_t kPeerImage = 32768;
constexpr qsizetype kOurImage = 126976;
constexpr double kLineRate = 11520.0;
constexpr std::uint8_t kAck = 0x06;

using Bytes = std::vector<std::uint8_t>;

std::uint16_t crcOf(std::span<const std::uint8_t> data) {
    boost::crc_xmodem_t crc;
    crc.process_bytes(data.data(), data.size());
    return crc.checksum();
}

/// A protocol that sends a block and waits for one byte of answer.
///   XMODEM   start, number, its complement, data, CRC-16 (high byte first)
///   plain    data
struct Protocol {
    const char* name;
    std::uint8_t start; ///< 0: plain
    std::size_t data;

    [[nodiscard]] std::size_t blockSize() const { return start == 0 ? data : data + 5; }

    [[nodiscard]] Bytes block(std::size_t number, std::span<const std::uint8_t> image) const {
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

    [[nodiscard]] bool isRight(std::span<const std::uint8_t> block) const {
        if (start == 0)
            return true;
        return block[0] == start && block[1] + block[2] == 0xFF && crcOf(block.subspan(3)) == 0;
    }
};

constexpr std::array kProtocols{Protocol{"XMODEM-128", 0x01, 128}, Protocol{"XMODEM-1K", 0x02, 1024},
                                Protocol{"stop and wait, 256 bytes", 0, 256}};

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

/// Use of the line in per cent: the image's bytes against the time from its first byte to the last answer.
double lineUseOf(const Protocol& protocol, std::chrono::milliseconds latency) {
    const AckLine line(
        protocol.blockSize(), [&protocol](auto block) { return protocol.isRight(block); }, latency);
    const zrkboard::FileDescriptor port(::open(line.devicePath().c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC));
    const Bytes image(kPeerImage, 0xA5);
    const auto begin = std::chrono::steady_clock::now();
    for (std::size_t number = 1; number <= image.size() / protocol.data; ++number) {
        writeAll(port.get(), protocol.block(number, image));
        if (readOne(port.get()) != kAck)
            throw std::runtime_error("the far end refuses a block");
    }
    const std::chrono::duration<double> took = std::chrono::steady_clock::now() - begin;
    return 100.0 * static_cast<double>(image.size()) / kLineRate / took.count();
}

double ourLineUse(std::chrono::milliseconds latency) {
    const zrkboard::BoardProcess board({"--adapter-latency", std::to_string(latency.count()) + "ms"});
    BenchLoader loader(QString::fromStdString(board.device()), kOurImage, 1);
    return 100.0 * kOurImage / kLineRate / loader.bringUp().lineSeconds();
}

} // namespace

void benchPeers() {
    using namespace std::chrono_literals;
    std::printf("use of the line at 115200 behind an adapter with a latency of:\n%28s %8s %8s %8s\n", "",
                "0 ms", "1 ms", "16 ms");
    const auto row = [](const char* name, const auto& measure) {
        std::printf("%28s", name);
        for (const auto latency : {0ms, 1ms, 16ms}) {
            std::printf(" %6.2f %%", measure(latency));
            std::fflush(stdout);
        }
        std::printf("\n");
    };
    row("this loader", ourLineUse);
    for (const Protocol& protocol : kProtocols)
        row(protocol.name,
            [&protocol](std::chrono::milliseconds latency) { return lineUseOf(protocol, latency); });
}

} // namespace zrkbench
