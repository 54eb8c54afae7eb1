#pragma once

#include <chrono>
#include <string>
#include <sys/types.h>
#include <vector>

namespace zrkboard {

// A running zrk-board, for whoever needs one beside it: tests and measurements. Waits give up after a minute.
class BoardProcess {
  public:
    // Starts the program that was built with this, and waits for its device. Throws std::runtime_error when
    // there is none.
    explicit BoardProcess(std::vector<std::string> options);
    ~BoardProcess();
    BoardProcess(const BoardProcess&) = delete;
    BoardProcess& operator=(const BoardProcess&) = delete;

    // The device to open, and the next one that it makes after a hang-up ("" when it ends instead).
    [[nodiscard]] const std::string& device() const { return m_device; }
    [[nodiscard]] std::string nextDevice() const;

    // Reads what it says on standard error until the text has come; false when it does not.
    [[nodiscard]] bool waitForLog(const std::string& text);

    void signal(int number) const;

    // Waits for its end, after asking for it unless it ends by itself; the exit status, -1 for a crash.
    int stop();
    int join();

    // All that it took; known once it has ended.
    [[nodiscard]] std::chrono::microseconds processorTime() const { return m_processorTime; }

  private:
    pid_t m_pid = -1;
    int m_out = -1;
    int m_err = -1;
    std::string m_device;
    std::string m_log;
    int m_status = -1;
    std::chrono::microseconds m_processorTime{};
};

// A program that was built beside it.
[[nodiscard]] std::string siblingProgram(const std::string& name);

} // namespace zrkboard
