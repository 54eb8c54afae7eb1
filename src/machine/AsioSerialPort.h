#pragma once

#include "machine/PortNames.h"
#include "platform/SerialPort.h"

#include <chrono>
#include <memory>

namespace zrk {

class EventLoop;
class PortDriver;

/// The machine's serial ports. Each open port has a thread of its own that serves the device and
/// wakes the event loop; all calls belong to the thread of that event loop.
class AsioSerialPort final : public SerialPort {
  public:
    struct Options {
        /// After this long without a byte going out, a line that is not under XON/XOFF is broken.
        std::chrono::milliseconds stallLimit{std::chrono::seconds(10)};
        /// With this many received bytes unread, no more are taken from the driver.
        qsizetype receiveLimit = qsizetype{1} << 20;
    };

    AsioSerialPort(EventLoop& loop, PortNames names);
    AsioSerialPort(EventLoop& loop, PortNames names, Options options);
    ~AsioSerialPort() override;

    void open(int number, const LineSettings& settings) override;
    void close() noexcept override;
    [[nodiscard]] bool isOpen() const noexcept override;
    [[nodiscard]] bool isLost() const noexcept override;
    [[nodiscard]] QString deviceName(int number) const override;
    [[nodiscard]] qsizetype bytesWaiting() override;
    [[nodiscard]] QByteArray read(qsizetype most) override;
    void skip(char byte) override;
    void write(QByteArrayView bytes) override;
    [[nodiscard]] qsizetype transmitRoom() override;
    [[nodiscard]] qsizetype unsentBytes() const noexcept override;
    void setHandshaking(Handshaking handshaking) override;
    bool setDtr(bool on) override;

    /// Waits, without yielding, until all that was written has left the program and the driver.
    /// False if that took longer than `limit`, or the device went away. Of use before close(),
    /// which drops what is left.
    bool drain(std::chrono::milliseconds limit);

  private:
    [[nodiscard]] PortDriver& driver() const;

    EventLoop& m_loop;
    PortNames m_names;
    Options m_options;
    Handshaking m_handshaking = Handshaking::None;
    std::unique_ptr<PortDriver> m_driver; ///< present while the port is open
};

} // namespace zrk
