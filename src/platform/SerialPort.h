#pragma once

#include "platform/LineErrors.h"

#include <QByteArray>
#include <QByteArrayView>
#include <QString>

#include <memory>
#include <optional>

namespace zrk {

struct LineSettings {
    int baudRate = 115200;
    char parity = 'N'; ///< 'N', 'E' or 'O'
    int dataBits = 8;
    int stopBits = 1;
    // Lines that are switched while the port is open; without a value they are as the system opens the port.
    std::optional<bool> dtr{};
    std::optional<bool> rts{};
};

enum class Handshaking { None = 0, XonXoff = 1 };

/// An open serial port of this machine or of a serial server. Destroying it closes it without waiting, and
/// drops what the line has not taken by then. No call yields to the event loop, and only write() blocks.
///
/// The port itself detects that its device has gone: from then on isLost() is true, and the next
/// bytesWaiting() that finds nothing left to read, read(), write(), transmitRoom() or setHandshaking() throws
/// RuntimeFailure (PortLost).
class SerialPort {
  public:
    /// The most that write() keeps in the program; bytes beyond that wait for the line.
    static constexpr qsizetype kTransmitQueueSize = 512;

    virtual ~SerialPort() = default;

    /// Returns true once the device has gone away. Never throws.
    [[nodiscard]] virtual bool isLost() const noexcept = 0;

    /// Returns the number of received bytes not yet read.
    [[nodiscard]] virtual qsizetype bytesWaiting() = 0;

    /// Takes up to `most` received bytes; empty if nothing waits.
    [[nodiscard]] virtual QByteArray read(qsizetype most) = 0;

    /// Drops the received bytes that wait in front as long as each is `byte`.
    virtual void skip(char byte) = 0;

    /// Hands bytes to the transmit queue, in order. If the queue is full, it blocks until the line has taken
    /// enough; if the line takes nothing at all for seconds it throws (PortLost), unless XON/XOFF has stopped
    /// it.
    virtual void write(QByteArrayView bytes) = 0;

    /// Returns how many bytes write() takes without blocking, 0 to kTransmitQueueSize.
    [[nodiscard]] virtual qsizetype transmitRoom() = 0;

    /// Returns how many written bytes have not left yet: those in the program, in the device's driver if it
    /// reports them, or on a line that cannot have carried them by now. 0 when lost. Never throws.
    [[nodiscard]] virtual qsizetype unsentBytes() const noexcept = 0;

    virtual void setHandshaking(Handshaking handshaking) = 0;

    /// Switches the DTR line. Returns false if the port has no such line, which is not a failure. Throws
    /// RuntimeFailure (WrongAnswer) if a serial server has refused it before; its answer comes later than the
    /// call.
    virtual bool setDtr(bool on) = 0;

    /// Returns the device's count of damaged and lost bytes, from an arbitrary start; empty if it does not
    /// count, and when lost.
    [[nodiscard]] virtual std::optional<LineErrors> lineErrors() const noexcept { return {}; }
};

/// The serial ports of the machine.
class SerialPorts {
  public:
    virtual ~SerialPorts() = default;

    /// Opens port `number` (1 to 8) for exclusive use; bytes that arrived before are never read. Throws
    /// RuntimeFailure (PortNotOpened) that says which device, why, and what to do. A port on the network
    /// takes up to 5 s and yields meanwhile; giveUp() ends that with a RuntimeFailure (Cancelled).
    [[nodiscard]] virtual std::unique_ptr<SerialPort> open(int number, const LineSettings& settings,
                                                           Handshaking handshaking) = 0;

    /// Ends an open() that is under way further up the stack; its device is free at once for another open().
    /// Does nothing without one.
    virtual void giveUp() {}

    /// Returns the device of `number`, for display ("" if there is none).
    [[nodiscard]] virtual QString deviceName(int number) const = 0;

    /// Returns whether that device is there; empty if only opening it shows that.
    [[nodiscard]] virtual std::optional<bool> isThere(int /*number*/) const { return {}; }

    /// Returns what a user should know before the port is opened: that `number` now means a device that the
    /// user may not expect. "" for nothing.
    [[nodiscard]] virtual QString notice(int /*number*/) const { return {}; }
};

} // namespace zrk
