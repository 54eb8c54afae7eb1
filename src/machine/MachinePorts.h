#pragma once

#include "machine/PortNames.h"
#include "platform/SerialPort.h"

#include <chrono>
#include <cstdint>
#include <optional>

namespace zrk {

class EventLoop;
class NetworkOpening;

/// The machine's serial ports, and those that it reaches over the network. Each open port has a thread of its
/// own that serves the device and wakes the event loop; all calls belong to the thread of that event loop.
class MachinePorts final : public SerialPorts {
  public:
    struct Options {
        /// The time without a byte going out after which a line that is not under XON/XOFF counts as broken.
        std::chrono::milliseconds stallLimit{std::chrono::seconds(10)};
        /// The number of unread bytes above which no more are taken from the driver.
        qsizetype receiveLimit = qsizetype{1} << 20;
        /// Bytes a second that the line carries, 0 for a port without a line; by default those of the line
        /// settings.
        std::optional<std::uint32_t> lineRate{};
        /// To hold while a port is open, see LineSettings.
        std::optional<bool> dtr{};
        std::optional<bool> rts{};
    };

    MachinePorts(EventLoop& loop, PortNames names);
    MachinePorts(EventLoop& loop, PortNames names, Options options);

    [[nodiscard]] std::unique_ptr<SerialPort> open(int number, const LineSettings& settings,
                                                   Handshaking handshaking) override;
    void giveUp() override;
    [[nodiscard]] QString deviceName(int number) const override { return m_names.device(number); }
    [[nodiscard]] std::optional<bool> isThere(int number) const override;
    [[nodiscard]] QString notice(int number) const override;

  private:
    EventLoop& m_loop;
    PortNames m_names;
    Options m_options;
    NetworkOpening* m_opening = nullptr; ///< under way
};

} // namespace zrk
