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

/// What a PortDriver moves bytes to and from: an open serial device, or a connection to one on the network.
/// It is closed when it is destroyed.
class PortDevice {
  public:
    using Done = std::function<void(const boost::system::error_code& error, std::size_t count)>;

    virtual ~PortDevice() = default;

    // On the driver's thread. One read and one write at a time; `done` comes later on the same thread.
    virtual void readSome(std::span<char> into, Done done) = 0;
    virtual void writeSome(std::span<const char> bytes, Done done) = 0;
    virtual void cancel() noexcept = 0;

    /// How often the device has to be looked at because it may leave a read waiting when it is pulled; zero
    /// when the read tells.
    [[nodiscard]] virtual std::chrono::milliseconds lookInterval() const { return {}; }

    /// The error that tells that the device has gone, or none. Never at the same time as unsentBytes() and
    /// lineErrors().
    [[nodiscard]] virtual boost::system::error_code look() noexcept { return {}; }

    /// What the user is told when reading or writing has ended with this error.
    [[nodiscard]] virtual QString goneText(const QString& port,
                                           const boost::system::error_code& error) const = 0;

    // On the owner's thread, also while the other one reads and writes.

    /// Throws away what the device has received and nobody has read.
    virtual void discardReceived() noexcept = 0;

    /// XON/XOFF in both directions; without it the two characters are ordinary ones. False when the device
    /// refuses.
    [[nodiscard]] virtual bool setXonXoff(bool on) noexcept = 0;

    /// False when the device has no such line. Throws RuntimeFailure (WrongAnswer) when a serial server is
    /// known to refuse.
    [[nodiscard]] virtual bool setDtr(bool on) = 0;

    /// Bytes that were taken and have not left yet, as far as the device can tell.
    [[nodiscard]] virtual std::size_t unsentBytes() const noexcept = 0;

    /// Damaged and lost bytes as the device counts them; nothing when it does not.
    [[nodiscard]] virtual std::optional<LineErrors> lineErrors() const noexcept { return {}; }
};

} // namespace zrk
