#include "BenchLoader.h"
#include "Benches.h"
#include "board/launcher/BoardProcess.h"

#include <cstdio>

namespace zrkbench {
namespace {

constexpr qsizetype kImageSize = 126976;
constexpr double kLineRate = 11520.0;
constexpr qsizetype kUnpacedSize = 8 << 20;

void printPaced(const char* what, const TransferTimes& times, qsizetype bytesOnLine) {
    const double ideal = static_cast<double>(bytesOnLine) / kLineRate;
    std::printf(
        "%s: %.3f s from first to last byte, the line needs %.3f s: %.2f %% of the line; hand-over ended "
        "%.3f s before; processor %.3f s/MB\n",
        what, times.lineSeconds(), ideal, 100.0 * ideal / times.lineSeconds(),
        times.lineSeconds() - times.handOverSeconds(),
        times.cpuSeconds / static_cast<double>(bytesOnLine) * 1e6);
}

} // namespace

void benchPacedLine() {
    {
        const zrkboard::BoardProcess board({});
        BenchLoader loader(QString::fromStdString(board.device()), kImageSize, kImageSize);
        printPaced("bring-up, paced", loader.bringUp(), kImageSize);
    }
    const zrkboard::BoardProcess board({});
    BenchLoader loader(QString::fromStdString(board.device()), kImageSize, kImageSize);
    constexpr qsizetype kFrameBytes = 9;
    printPaced("flash data frame, paced", loader.programFlash(), kImageSize + kFrameBytes);
}

void benchUnpaced() {
    const zrkboard::BoardProcess board({"--unpaced"});
    BenchLoader loader(QString::fromStdString(board.device()), kUnpacedSize, 1, 0);
    const TransferTimes times = loader.bringUp();
    const double megabytes = static_cast<double>(kUnpacedSize) / 1e6;
    std::printf("unpaced: %.0f bytes/s, processor %.3f s/MB\n", megabytes * 1e6 / times.lineSeconds(),
                times.cpuSeconds / megabytes);
}

} // namespace zrkbench
