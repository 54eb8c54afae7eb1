#pragma once

#include "board/AdapterBuffer.h"
#include "board/PacedQueue.h"
#include "board/program/PseudoTerminal.h"

#include <atomic>
#include <chrono>
#include <functional>
#include <thread>

namespace zrkbench {

/// The far end of a stop-and-wait protocol on a line of 11,520 bytes/s each way, behind an adapter. It
/// answers each correct block with one byte.
class AckLine {
  public:
    using Check = std::function<bool(std::span<const std::uint8_t> block)>;

    /// Takes the `blockSize` in bytes of a block with all its framing.
    AckLine(std::size_t blockSize, Check check, std::chrono::milliseconds adapterLatency);
    ~AckLine();
    AckLine(const AckLine&) = delete;
    AckLine& operator=(const AckLine&) = delete;

    [[nodiscard]] const std::string& devicePath() const { return m_terminal.devicePath(); }

  private:
    void run();
    void wait() const;

    zrkboard::PseudoTerminal m_terminal;
    std::size_t m_blockSize;
    Check m_check;
    zrkboard::PacedQueue m_toFarEnd;
    zrkboard::PacedQueue m_toSender;
    zrkboard::AdapterBuffer m_adapter;
    std::vector<std::uint8_t> m_block;
    std::atomic<bool> m_over = false;
    std::thread m_thread;
};

} // namespace zrkbench
