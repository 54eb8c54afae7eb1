#pragma once

#include "SoakEnd.h"

namespace zrkbench {

/// Runs the plan with loader and board in this process and on virtual time. Safe from any thread.
[[nodiscard]] SoakEnd runVirtually(const SoakPlan& plan);

/// Runs the plan with the programs zrk-board and zrk-loader-cli on a pseudo-terminal. Safe from any thread.
/// Throws std::exception when that cannot be had at all.
[[nodiscard]] SoakEnd runOnTerminal(const SoakPlan& plan);

struct SoakOptions {
    int runs = 2'000;
    std::uint64_t seed = 1; ///< of the first run; each further one has the next
    int terminalRuns = 200;
    int jobs = 0; ///< at once; 0: virtual ones as many as there are processors, others four times that
};

/// The arguments behind "soak"; throws std::invalid_argument.
[[nodiscard]] SoakOptions soakOptions(const std::vector<std::string>& arguments);

/// So many runs on virtual time, several at once.
[[nodiscard]] SoakTable soakVirtually(const SoakOptions& options);

/// The whole soak with its tables; false when a run ended wrongly.
[[nodiscard]] bool benchSoak(const SoakOptions& options);

} // namespace zrkbench
