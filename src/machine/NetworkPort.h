#pragma once

#include "machine/NameLookup.h"
#include "machine/NetworkMessages.h"
#include "machine/PortDevice.h"
#include "machine/Rfc2217.h"

#include <boost/asio/io_context.hpp>
#include <boost/asio/steady_timer.hpp>

#include <array>
#include <atomic>
#include <optional>
#include <string>

namespace zrk {

/// A connection to a serial server.
class NetworkPort final : public PortDevice {
  public:
    using Opened = std::function<void(const NetworkFailure& failure)>;

    NetworkPort(boost::asio::io_context& io, NetworkAddress address);

    /// Blocks until the server has ended the connection, too, half a second at most: cutting off a connection
    /// with unread bytes drops what the server has not sent to its line yet.
    ~NetworkPort() override;
    NetworkPort(const NetworkPort&) = delete;
    NetworkPort& operator=(const NetworkPort&) = delete;

    /// Connects and, with RFC 2217, sets up the line. `opened` is called once on the driver's thread, which
    /// also calls this.
    void open(NameLookup::Endpoints endpoints, const LineSettings& settings, Opened opened);

    /// Any thread may call it.
    [[nodiscard]] bool isConnected() const { return m_isConnected; }

    void readSome(std::span<char> into, Done done) override;
    void writeSome(std::span<const char> bytes, Done done) override;
    void cancel() noexcept override;
    [[nodiscard]] QString goneText(const QString& port,
                                   const boost::system::error_code& error) const override;
    void discardReceived() noexcept override {} // nothing comes before the connection exists
    [[nodiscard]] bool setXonXoff(bool on) noexcept override;
    [[nodiscard]] bool setDtr(bool on) override;
    [[nodiscard]] std::size_t unsentBytes() const noexcept override;

  private:
    using ErrorCode = boost::system::error_code;
    using Socket = boost::asio::ip::tcp::socket;

    void onConnected(const ErrorCode& error, const LineSettings& settings);
    void finishOpening(const NetworkFailure& failure);
    void judgeOpening();
    void judgeClosing();
    [[nodiscard]] bool hasRoom() const;
    [[nodiscard]] bool isEverythingRead() const { return m_firstUnread == m_received.size(); }
    void receive();
    void onReceived(const ErrorCode& error, std::size_t count);
    void deliver();
    void flush();
    void onFlushed(const ErrorCode& error);

    const NetworkAddress m_address;
    boost::asio::io_context& m_io;
    Socket m_socket;
    boost::asio::steady_timer m_graceTimer;
    std::atomic<bool> m_isConnected = false;
    std::atomic<bool> m_isDtrRefused = false;
    Opened m_opened; ///< null once it was called
    NameLookup::Endpoints m_endpoints;
    std::optional<Rfc2217> m_rfc2217; ///< empty on a raw port

    std::array<char, 4096> m_wire{};
    bool m_isReceiving = false;
    std::string m_received;        ///< the line's bytes
    std::size_t m_firstUnread = 0; ///< in m_received
    ErrorCode m_error;             ///< ended the reception
    ErrorCode m_sendError;         ///< ended the sending, and then the reception
    std::span<char> m_readInto;
    Done m_reader;

    std::string m_toSend; ///< the next bytes to send, as on the wire
    std::string m_flying;
    std::size_t m_written = 0; ///< the line's bytes that the writer waits for
    bool m_writerIsFlying = false;
    Done m_writer;
};

} // namespace zrk
