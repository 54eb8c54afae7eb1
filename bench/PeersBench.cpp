#include "BenchLoader.h"
#include "Benches.h"
#include "FigureTable.h"
#include "Line.h"
#include "StopAndWait.h"
#include "board/launcher/BoardProcess.h"

#include <array>

namespace zrkbench {
namespace {

using namespace std::chrono_literals;

constexpr qsizetype kImageSize = 65536;

constexpr std::array kPeers{StopAndWait{"XMODEM-128", 0x01, 128}, StopAndWait{"XMODEM-1K", 0x02, 1024},
                            StopAndWait{"256 bytes, stop and wait", 0, 256}};

double ourRate(std::chrono::milliseconds latency) {
    const zrkboard::BoardProcess board({"--adapter-latency", std::to_string(latency.count()) + "ms"});
    BenchLoader loader(QString::fromStdString(board.device()), {kImageSize, 1, 1});
    return static_cast<double>(kImageSize) / loader.bringUp().lineSeconds();
}

} // namespace

void benchPeers() {
    for (const auto latency : {0ms, 1ms, 16ms}) {
        const std::string where = "adapter of " + std::to_string(latency.count()) + " ms";
        const double ours = ourRate(latency);
        FigureTable::limited("line use, bring-up, " + where, rateText(ours), rateText(kLineRate),
                             ours / kLineRate);
        for (const StopAndWait& peer : kPeers) {
            const double theirs = rateOf(peer, latency);
            const std::string share = " (" + percentText(theirs / kLineRate) + " of the line)";
            FigureTable::compared("the same beside " + std::string(peer.name), rateText(ours),
                                  rateText(theirs) + share, ours / theirs);
        }
    }
}

} // namespace zrkbench
