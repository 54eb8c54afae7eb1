#include "Soak.h"

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <functional>
#include <mutex>
#include <stdexcept>
#include <thread>

namespace zrkbench {
namespace {

std::uint64_t number(const std::string& text, std::uint64_t most) {
    std::size_t end = 0;
    std::uint64_t value = 0;
    try {
        value = std::stoull(text, &end);
    } catch (const std::exception&) {
        end = 0;
    }
    if (end == 0 || end != text.size() || text[0] == '-' || value > most)
        throw std::invalid_argument("\"" + text + "\" is not a number up to " + std::to_string(most));
    return value;
}

/// Runs the plans of the seeds, so many at once. A run that cannot be started counts as a wrong end, too.
SoakTable soak(std::uint64_t seed, int runs, int jobs, SoakEnd (*run)(const SoakPlan&)) {
    SoakTable table;
    std::mutex mutex;
    std::atomic<int> next = 0;
    const auto work = [&] {
        for (int i = next++; i < runs; i = next++) {
            const SoakPlan plan = soakPlan(seed + static_cast<std::uint64_t>(i));
            SoakEnd end;
            try {
                end = run(plan);
            } catch (const std::exception& error) {
                end.status = QString::fromUtf8(error.what());
            }
            const std::scoped_lock lock(mutex);
            table.add(plan, end);
        }
    };
    std::vector<std::jthread> threads;
    threads.reserve(static_cast<std::size_t>(std::max(jobs, 0)));
    for (int i = 0; i < std::min(jobs, runs); ++i)
        threads.emplace_back(work);
    threads.clear();
    return table;
}

int processors() {
    return std::max(1, static_cast<int>(std::thread::hardware_concurrency()));
}

} // namespace

SoakOptions soakOptions(const std::vector<std::string>& arguments) {
    constexpr std::uint64_t kMostRuns = 100'000'000;
    constexpr std::uint64_t kMostJobs = 1'000;
    SoakOptions options;
    for (std::size_t i = 0; i < arguments.size(); i += 2) {
        if (i + 1 == arguments.size())
            throw std::invalid_argument(arguments[i] + " needs a number");
        const std::string& value = arguments[i + 1];
        if (arguments[i] == "--runs")
            options.runs = static_cast<int>(number(value, kMostRuns));
        else if (arguments[i] == "--seed")
            options.seed = number(value, UINT64_MAX);
        else if (arguments[i] == "--pty")
            options.terminalRuns = static_cast<int>(number(value, kMostRuns));
        else if (arguments[i] == "--jobs")
            options.jobs = static_cast<int>(number(value, kMostJobs));
        else
            throw std::invalid_argument("soak takes --runs N, --seed S, --pty N and --jobs N, not " +
                                        arguments[i]);
    }
    return options;
}

SoakTable soakVirtually(const SoakOptions& options) {
    return soak(options.seed, options.runs, options.jobs != 0 ? options.jobs : processors(), runVirtually);
}

bool benchSoak(const SoakOptions& options) {
    // A run on a terminal mostly waits.
    constexpr int kTerminalRunsAProcessor = 4;
    bool good = true;
    if (options.runs != 0) {
        const SoakTable table = soakVirtually(options);
        table.print("virtual time");
        good = table.wrong.empty();
    }
    if (options.terminalRuns != 0) {
        const int jobs = options.jobs != 0 ? options.jobs : kTerminalRunsAProcessor * processors();
        const SoakTable table = soak(options.seed, options.terminalRuns, jobs, runOnTerminal);
        table.print("zrk-loader-cli on a pseudo-terminal");
        good = good && table.wrong.empty();
    }
    return good;
}

} // namespace zrkbench
