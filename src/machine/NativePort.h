#pragma once

// Boost 1.74 uses std::exchange under C++20 without including it, so the order matters.
// clang-format off
#include <utility>

#include <boost/asio/io_context.hpp>
#include <boost/asio/serial_port.hpp>
// clang-format on

#include <cstddef>
#include <string>

namespace zrk {

enum class OpenFault { None, NoSuchDevice, InUse, PermissionDenied, NotASerialPort, Other };

struct OpenResult {
    OpenFault fault = OpenFault::None;
    std::string reason{}; ///< the system's own words, for Other
    std::string group{};  ///< of PermissionDenied: whose members may use the device, "" if nobody's
};

/// A serial device opened for exclusive use, and what the stream library does not do to it.
/// There is one implementation per system. setXonXoff(), setDtr() and unsentBytes() may be called
/// while another thread reads and writes the stream.
class NativePort {
  public:
    explicit NativePort(boost::asio::io_context& io) : m_stream(io) {}
    ~NativePort() { close(); }
    NativePort(const NativePort&) = delete;
    NativePort& operator=(const NativePort&) = delete;

    /// Opens the device in raw mode, without flow control. Line settings are the stream's options.
    [[nodiscard]] OpenResult open(const std::string& device);

    /// Drops what the driver has not sent yet, so that it never waits for a line that is stopped.
    void close() noexcept;

    /// Throws away what the driver has received and nobody has read.
    void discardReceived() noexcept;

    /// XON/XOFF in both directions; without it the two characters are ordinary ones. False when
    /// the device refuses.
    [[nodiscard]] bool setXonXoff(bool on) noexcept;

    /// False when the device has no such line.
    [[nodiscard]] bool setDtr(bool on) noexcept;

    /// Bytes that the driver has taken and that have not left yet, as far as it can tell.
    [[nodiscard]] std::size_t unsentBytes() const noexcept;

    [[nodiscard]] boost::asio::serial_port& stream() { return m_stream; }

  private:
    boost::asio::serial_port m_stream;
    boost::asio::serial_port::native_handle_type m_handle{};
};

} // namespace zrk
