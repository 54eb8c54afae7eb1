#pragma once

#include <sys/types.h>
#include <vector>

namespace zrkbench {

/// Processes that do nothing but burn processor time, as long as this lives. Make it before any thread.
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
