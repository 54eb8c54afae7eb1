#pragma once

#include "machine/PortDevice.h"

// Boost 1.74 uses std::exchange under C++20 without including it, so the order matters.
// clang-format off
#include <utility>

#include <boost/asio/io_context.hpp>
#include <boost/asio/serial_port.hpp>
// clang-format on

#include <cstddef>
#include <string>

namespace zrk {

enum class OpenFault { None, NoSuchDevice, InUse, PermissionDenied, NotASerialPort, Scarce, Other };

struct OpenResult {
    OpenFault fault = OpenFault::None;
    /// The system's own words, for Scarce and Other; for InUse the process whose terminal it is, or "".
    std::string reason{};
    std::string user{};  ///< of InUse: the program that has it open, "" when not known
    std::string group{}; ///< of PermissionDenied: its members may use the device; "" if none
};

/// Finds what would keep the device from being opened, as far as that shows without opening it, which would
/// switch DTR.
[[nodiscard]] OpenResult foreseeOpening(const std::string& device);

struct LineSettings;

/// A serial device opened for exclusive use, with what the stream library leaves to each system.
class NativePort final : public PortDevice {
  public:
    explicit NativePort(boost::asio::io_context& io) : m_stream(io) {}
    ~NativePort() override { close(); }
    NativePort(const NativePort&) = delete;
    NativePort& operator=(const NativePort&) = delete;

    /// Opens the device in raw mode, without flow control.
    [[nodiscard]] OpenResult open(const std::string& device);

    /// Returns false if the device refuses one of them.
    [[nodiscard]] bool applySettings(const LineSettings& settings);

    /// Switches DTR and RTS as the settings ask for it. False when the device has no such line.
    [[nodiscard]] bool holdLines(const LineSettings& settings) noexcept;

    /// Drops what the driver has not sent yet, so that it never waits for a line that is stopped.
    void close() noexcept;

    void readSome(std::span<char> into, Done done) override;
    void writeSome(std::span<const char> bytes, Done done) override;
    void cancel() noexcept override;
    [[nodiscard]] std::chrono::milliseconds lookInterval() const override;
    [[nodiscard]] boost::system::error_code look() noexcept override;
    [[nodiscard]] QString goneText(const QString& port,
                                   const boost::system::error_code& error) const override;
    void discardReceived() noexcept override;
    [[nodiscard]] bool setXonXoff(bool on) noexcept override;
    [[nodiscard]] bool setDtr(bool on) noexcept override;
    [[nodiscard]] std::size_t unsentBytes() const noexcept override;
    [[nodiscard]] std::optional<LineErrors> lineErrors() const noexcept override;

  private:
    boost::asio::serial_port m_stream;
    boost::asio::serial_port::native_handle_type m_handle{};
    /// For systems without counts, which only report that something has happened since the last call.
    mutable LineErrors m_seen;
    bool m_isWriting = false; ///< driver's thread, and close() after it
};

} // namespace zrk
