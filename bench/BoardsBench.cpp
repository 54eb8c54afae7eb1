#include "BenchLoader.h"
#include "Benches.h"
#include "FigureTable.h"
#include "Line.h"
#include "board/launcher/BoardProcess.h"

#include <QThread>

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <memory>
#include <optional>
#include <stdexcept>
#include <utility>
#include <vector>

namespace zrkbench {
namespace {

constexpr qsizetype kImageSize = 126976;
constexpr double kIdealSeconds = kImageSize / kLineRate;

/// A bring-up of one board on a thread of its own.
struct Run {
    Run() : board({}) {}

    zrkboard::BoardProcess board;
    std::optional<TransferTimes> times;
    std::unique_ptr<QThread> thread;
};

} // namespace

void benchBoards(int count) {
    std::vector<std::unique_ptr<Run>> runs;
    runs.reserve(static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i)
        runs.push_back(std::make_unique<Run>());
    const std::clock_t cpuBegin = std::clock();
    const auto begin = std::chrono::steady_clock::now();
    for (const auto& run : runs) {
        run->thread.reset(QThread::create([&run = *run] {
            try {
                BenchLoader loader(QString::fromStdString(run.board.device()), {kImageSize, 1, 1});
                run.times = loader.bringUp();
            } catch (const std::exception& error) {
                std::fprintf(stderr, "zrk-bench: %s\n", error.what());
            }
        }));
        run->thread->start();
    }
    std::vector<double> use;
    for (const auto& run : runs) {
        run->thread->wait();
        use.push_back(run->times ? kIdealSeconds / run->times->lineSeconds() : 0.0);
    }
    const std::chrono::duration<double> took = std::chrono::steady_clock::now() - begin;
    const auto [worst, best] = std::minmax_element(use.begin(), use.end());
    const std::string boards = std::to_string(count) + " boards at once, ";
    for (const auto& [which, share] : {std::pair("the slowest line", *worst), {"the fastest line", *best}})
        FigureTable::limited(boards + which, rateText(share * kLineRate), rateText(kLineRate), share);
    const double core = static_cast<double>(std::clock() - cpuBegin) / CLOCKS_PER_SEC / took.count();
    FigureTable::limited(boards + "processor of all loaders", percentText(core) + " of a core", "a core",
                         core);
}

} // namespace zrkbench
