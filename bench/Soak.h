#pragma once

#include "SoakEnd.h"

namespace zrkbench {

/// Runs the plan with loader and board in this process and on virtual time. Any thread may call it.
[[nodiscard]] SoakEnd runVirtually(const SoakPlan& plan);

/// Runs the plan with the programs zrk-board and zrk-loader-cli on a pseudo-terminal. Any thread may call it.
/// Throws std::exception if they cannot be run.
[[nodiscard]] SoakEnd runOnTerminal(const SoakPlan& plan);

struct SoakOptions {
    int runs = 2'000;
    std::uint64_t seed = 1; ///< of the first run; each further one has the next
    int terminalRuns = 200;
    int jobs = 0; ///< at once; 0: virtual ones as many as there are processors, others four times that
};

/// Reads the arguments after "soak"; throws std::invalid_argument.
[[nodiscard]] SoakOptions soakOptions(const std::vector<std::string>& arguments);

/// Makes so many runs on virtual time, several at once.
[[nodiscard]] SoakTable soakVirtually(const SoakOptions& options);

/// Runs the whole soak and prints its tables; returns false if a run ended wrongly.
[[nodiscard]] bool benchSoak(const SoakOptions& options);

} // namespace zrkbench
