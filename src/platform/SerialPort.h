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

/// An open serial port of this machine or behind a serial server, which is closed when it is destroyed:
/// without waiting, and what the line has not taken by then is dropped. No call yields to the event loop, and
/// none but write() blocks.
///
/// A device that goes away is noticed by the port itself: from then on isLost() is true, and the
/// next bytesWaiting() that finds nothing left to read, read(), write(), transmitRoom() or setHandshaking()
/// throws RuntimeFailure (PortLost).
class SerialPort {
  public:
    /// The most that write() keeps in the program; what it is given beyond that waits for the line.
    static constexpr qsizetype kTransmitQueueSize = 512;

    virtual ~SerialPort() = default;

    /// True once the device has gone away. Never throws.
    [[nodiscard]] virtual bool isLost() const noexcept = 0;

    /// Received bytes not yet read.
    [[nodiscard]] virtual qsizetype bytesWaiting() = 0;

    /// Takes up to `most` received bytes; empty when nothing waits.
    [[nodiscard]] virtual QByteArray read(qsizetype most) = 0;

    /// Takes the received bytes that wait in front as long as each is `byte`, and drops them.
    virtual void skip(char byte) = 0;

    /// Hands bytes to the transmit queue, in order. With a full queue it blocks until the line has
    /// taken enough; if the line takes nothing at all for seconds it throws (PortLost), unless
    /// XON/XOFF has stopped it.
    virtual void write(QByteArrayView bytes) = 0;

    /// Bytes that write() takes without blocking, 0 to kTransmitQueueSize.
    [[nodiscard]] virtual qsizetype transmitRoom() = 0;

    /// Bytes that were written and have not left yet: in the program, in the device's driver as far as that
    /// can tell, or on a line that cannot have carried them by now. 0 when lost. Never throws.
    [[nodiscard]] virtual qsizetype unsentBytes() const noexcept = 0;

    virtual void setHandshaking(Handshaking handshaking) = 0;

    /// Switches the DTR line. False when the port has no such line, which is no failure. Throws
    /// RuntimeFailure (WrongAnswer) when a serial server has refused it before; its answer comes later than
    /// the call.
    virtual bool setDtr(bool on) = 0;

    /// What the device counts of damaged and lost bytes, since whenever it began to; nothing where it does
    /// not count, and when lost.
    [[nodiscard]] virtual std::optional<LineErrors> lineErrors() const noexcept { return {}; }
};

/// The serial ports of the machine.
class SerialPorts {
  public:
    virtual ~SerialPorts() = default;

    /// Opens port `number` (1 to 8) for exclusive use; bytes that arrived before are never read.
    /// Throws RuntimeFailure (PortNotOpened) that says which device, why, and what to do. A port on the
    /// network takes up to 5 s and yields meanwhile; giveUp() ends that with a RuntimeFailure (Cancelled).
    [[nodiscard]] virtual std::unique_ptr<SerialPort> open(int number, const LineSettings& settings,
                                                           Handshaking handshaking) = 0;

    /// Ends an open() that is under way further up the stack, whose device is free at once for another
    /// open(); without one it does nothing.
    virtual void giveUp() {}

    /// The device that `number` stands for, for display ("" when there is none).
    [[nodiscard]] virtual QString deviceName(int number) const = 0;

    /// Whether that device is there; nothing where it shows only when it is opened.
    [[nodiscard]] virtual std::optional<bool> isThere(int /*number*/) const { return {}; }

    /// What a user should know before the port is opened: that `number` has fallen to a device that he may
    /// not have meant. "" for nothing.
    [[nodiscard]] virtual QString notice(int /*number*/) const { return {}; }
};

} // namespace zrk
