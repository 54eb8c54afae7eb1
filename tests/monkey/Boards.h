#pragma once

#include "simulation/BoardPort.h"

#include <cstdint>

namespace zrkmonkey {

/// The machine's port with a board, which another one can replace.
class Boards final : public zrk::SerialPorts {
  public:
    explicit Boards(zrksim::VirtualEventLoop& loop) : m_loop(loop) { plugIn({}, {}); }

    [[nodiscard]] std::unique_ptr<zrk::SerialPort> open(int number, const zrk::LineSettings& settings,
                                                        zrk::Handshaking handshaking) override;
    [[nodiscard]] QString deviceName(int number) const override { return now().deviceName(number); }

    [[nodiscard]] zrksim::BoardPort& now() { return *m_all.back(); }
    [[nodiscard]] const zrksim::BoardPort& now() const { return *m_all.back(); }

    /// Pulls the adapter with its board and plugs in another one.
    void plugIn(const zrkboard::BoardOptions& options, const zrkboard::WireFaults& faults);
    /// Plugs in a board with faults of this seed.
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
