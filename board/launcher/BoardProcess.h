#pragma once

#include <chrono>
#include <string>
#include <sys/types.h>
#include <vector>

namespace zrkboard {

// A running zrk-board for tests and measurements. Waits end after ten minutes.
class BoardProcess {
  public:
    // Starts the program that was built with this one, and waits for its device. Throws std::runtime_error if
    // there is none.
    explicit BoardProcess(std::vector<std::string> options);
    ~BoardProcess();
    BoardProcess(const BoardProcess&) = delete;
    BoardProcess& operator=(const BoardProcess&) = delete;

    // Returns the device to open, and the next one that it makes after a hang-up ("" if it ends instead).
    [[nodiscard]] const std::string& device() const { return m_device; }
    [[nodiscard]] std::string nextDevice() const;

    // Reads its standard error until the text has come; returns false if it does not.
    [[nodiscard]] bool waitForLog(const std::string& text);

    void signal(int number) const;

    // Waits for its end, which stop() asks for; returns the exit status, -1 for a crash.
    int stop();
    int join();

    // Returns all that it used; known once it has ended.
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

// Returns the path of a program that was built with this one.
[[nodiscard]] std::string siblingProgram(const std::string& name);

} // namespace zrkboard
