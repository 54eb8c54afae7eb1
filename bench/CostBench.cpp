#include "BenchLoader.h"
#include "Benches.h"
#include "FigureTable.h"
#include "Line.h"
#include "board/launcher/BoardProcess.h"
#include "board/program/FileDescriptor.h"
#include "board/program/PseudoTerminal.h"

#include <fcntl.h>
#include <poll.h>
#include <stdexcept>
#include <thread>
#include <unistd.h>

namespace zrkbench {
namespace {

constexpr qsizetype kPacedSize = 65536;
constexpr qsizetype kUnpacedSize = 8 << 20;

double megabytes(qsizetype bytes) {
    return static_cast<double>(bytes) / 1e6;
}

/// Measures plain writes of one byte each into a pseudo-terminal that is read at once, in bytes a second.
double plainWrites() {
    constexpr std::size_t kBytes = 1 << 20;
    zrkboard::PseudoTerminal terminal;
    const zrkboard::FileDescriptor port(::open(terminal.devicePath().c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC));
    const auto begin = std::chrono::steady_clock::now();
    std::jthread writer([&port] {
        const char byte = '\xA5';
        for (std::size_t i = 0; i < kBytes && ::write(port.get(), &byte, 1) == 1; ++i) {
        }
    });
    std::size_t received = 0;
    while (received < kBytes) {
        pollfd ready{terminal.masterFd(), POLLIN, 0};
        if (::poll(&ready, 1, 5000) != 1)
            throw std::runtime_error("a plain write to a pseudo-terminal does not arrive");
        received += terminal.read(4096).size();
    }
    const std::chrono::duration<double> took = std::chrono::steady_clock::now() - begin;
    return static_cast<double>(kBytes) / took.count();
}

} // namespace

void benchCost() {
    const auto ofLine = [](const char* name, double cost) {
        FigureTable::limited(name, costText(cost), costText(kLineSecondsPerMegabyte) + " (time of the line)",
                             cost / kLineSecondsPerMegabyte);
    };
    {
        const zrkboard::BoardProcess board({});
        BenchLoader loader(QString::fromStdString(board.device()), {kPacedSize, 1, 1});
        ofLine("processor, on the line", loader.bringUp().cpuSeconds / megabytes(kPacedSize));
    }
    const zrkboard::BoardProcess board({"--unpaced"});
    BenchLoader loader(QString::fromStdString(board.device()), {kUnpacedSize, 1, 1}, 0);
    const TransferTimes times = loader.bringUp();
    ofLine("processor, without a line", times.cpuSeconds / megabytes(kUnpacedSize));
    const double rate = static_cast<double>(kUnpacedSize) / times.lineSeconds();
    const double peer = plainWrites();
    FigureTable::compared("speed without a line", rateText(rate),
                          rateText(peer) + " (plain writes of a byte)", rate / peer);
}

} // namespace zrkbench
