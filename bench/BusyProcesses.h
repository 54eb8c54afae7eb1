#pragma once

#include <sys/types.h>
#include <vector>

namespace zrkbench {

/// Processes that only burn processor time, as long as this exists. Make it before any thread.
class BusyProcesses {
  public:
    explicit BusyProcesses(int count);
    ~BusyProcesses();
    BusyProcesses(const BusyProcesses&) = delete;
    BusyProcesses& operator=(const BusyProcesses&) = delete;

  private:
    std::vector<pid_t> m_processes;
};

} // namespace zrkbench
