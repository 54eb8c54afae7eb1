#pragma once

#include "simulation/BoardPort.h"

#include <cstdint>

namespace zrkmonkey {

/// The machine's port with a board behind it, in whose place another one can be plugged in.
class Boards final : public zrk::SerialPorts {
  public:
    explicit Boards(zrksim::VirtualEventLoop& loop) : m_loop(loop) { plugIn({}, {}); }

    [[nodiscard]] std::unique_ptr<zrk::SerialPort> open(int number, const zrk::LineSettings& settings,
                                                        zrk::Handshaking handshaking) override;
    [[nodiscard]] QString deviceName(int number) const override { return now().deviceName(number); }

    [[nodiscard]] zrksim::BoardPort& now() { return *m_all.back(); }
    [[nodiscard]] const zrksim::BoardPort& now() const { return *m_all.back(); }

    /// Pulls the adapter with the board behind it and plugs in another one.
    void plugIn(const zrkboard::BoardOptions& options, const zrkboard::WireFaults& faults);
    /// One that misbehaves in a way of its own.
    void plugInBadOne(std::uint64_t seed);

    [[nodiscard]] int timesOpened() const { return m_timesOpened; }
    [[nodiscard]] bool wasOpenedTwice() const { return m_wasOpenedTwice; }

  private:
    zrksim::VirtualEventLoop& m_loop;
    std::vector<std::unique_ptr<zrksim::BoardPort>> m_all; ///< the old ones have bytes on their way
    int m_timesOpened = 0;
    bool m_wasOpenedTwice = false;
};

} // namespace zrkmonkey
