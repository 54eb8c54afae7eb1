#pragma once

#include "platform/LineErrors.h"

#include <QString>

#include <boost/system/error_code.hpp>

#include <chrono>
#include <cstddef>
#include <functional>
#include <optional>
#include <span>

namespace zrk {

/// The device of a PortDriver: an open serial device, or a connection to one on the network. Destroying it
/// closes it.
class PortDevice {
  public:
    using Done = std::function<void(const boost::system::error_code& error, std::size_t count)>;

    virtual ~PortDevice() = default;

    // On the driver's thread. One read and one write at a time; `done` comes later on the same thread.
    virtual void readSome(std::span<char> into, Done done) = 0;
    virtual void writeSome(std::span<const char> bytes, Done done) = 0;
    virtual void cancel() noexcept = 0;

    /// Returns how often to call look() because the device may leave a read waiting when it is pulled; zero
    /// if the read reports that.
    [[nodiscard]] virtual std::chrono::milliseconds lookInterval() const { return {}; }

    /// Returns the error that the device has gone, or none. Never runs at the same time as unsentBytes() and
    /// lineErrors().
    [[nodiscard]] virtual boost::system::error_code look() noexcept { return {}; }

    /// Returns the message for a read or write that has ended with this error.
    [[nodiscard]] virtual QString goneText(const QString& port,
                                           const boost::system::error_code& error) const = 0;

    // On the owner's thread, also while the other one reads and writes.

    /// Drops received bytes that were not read.
    virtual void discardReceived() noexcept = 0;

    /// Switches XON/XOFF in both directions; without it the two characters are ordinary ones. Returns false
    /// if the device refuses.
    [[nodiscard]] virtual bool setXonXoff(bool on) noexcept = 0;

    /// Switches DTR. Returns false if the device has no such line. Throws RuntimeFailure (WrongAnswer) if a
    /// serial server is known to refuse.
    [[nodiscard]] virtual bool setDtr(bool on) = 0;

    /// Returns how many taken bytes have not left yet, as far as the device reports them.
    [[nodiscard]] virtual std::size_t unsentBytes() const noexcept = 0;

    /// Returns the device's count of damaged and lost bytes; empty if it does not count.
    [[nodiscard]] virtual std::optional<LineErrors> lineErrors() const noexcept { return {}; }
};

} // namespace zrk
