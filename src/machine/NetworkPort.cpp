#include "machine/NetworkPort.h"

#include "machine/SocketWatch.h"
#include "platform/RuntimeFailure.h"

#include <boost/asio/connect.hpp>
#include <boost/asio/post.hpp>
#include <boost/asio/write.hpp>

#include <algorithm>
#include <utility>

namespace zrk {

namespace asio = boost::asio;
using namespace std::chrono_literals;

namespace {

// A server whose port is taken accepts, sends that and closes; a raw port cannot report it otherwise.
constexpr std::chrono::milliseconds kGrace = 250ms;
constexpr std::chrono::milliseconds kFarewell = 500ms;
// A server must not decide how much memory its bytes take. More of them wait in the connection, until it
// stops the server.
constexpr std::size_t kMostWaiting = std::size_t{64} << 10;

/// Ends the sending, and drops what comes until the server ends the connection, too.
void endInOrder(asio::ip::tcp::socket& socket) {
    boost::system::error_code error;
    socket.shutdown(asio::ip::tcp::socket::shutdown_send, error);
    socket.non_blocking(true, error);
    const auto end = std::chrono::steady_clock::now() + kFarewell;
    std::array<char, 1024> rest{};
    while (!error) {
        const auto left =
            std::chrono::duration_cast<std::chrono::milliseconds>(end - std::chrono::steady_clock::now());
        if (left.count() <= 0 || !waitReadable(socket.native_handle(), left))
            return;
        (void)socket.read_some(asio::buffer(rest), error);
    }
}

} // namespace

NetworkPort::NetworkPort(asio::io_context& io, NetworkAddress address)
    : m_address(std::move(address)), m_io(io), m_socket(io), m_graceTimer(io) {
    if (m_address.protocol == NetworkAddress::Protocol::Rfc2217)
        m_rfc2217.emplace(
            [this](std::span<const char> bytes) { m_toSend.append(bytes.data(), bytes.size()); },
            [this](std::span<const char> bytes) { m_received.append(bytes.data(), bytes.size()); });
}

NetworkPort::~NetworkPort() {
    if (m_isConnected && !m_opened && !m_error)
        endInOrder(m_socket);
}

void NetworkPort::open(NameLookup::Endpoints endpoints, const LineSettings& settings, Opened opened) {
    m_opened = std::move(opened);
    m_endpoints = std::move(endpoints);
    asio::async_connect(
        m_socket, m_endpoints,
        [this, settings](const ErrorCode& error, const auto& /*endpoint*/) { onConnected(error, settings); });
}

void NetworkPort::onConnected(const ErrorCode& error, const LineSettings& settings) {
    if (error)
        return finishOpening(network_messages::failureOf(error));
    m_isConnected = true;
    ErrorCode ignored;
    m_socket.set_option(asio::ip::tcp::no_delay(true), ignored);
    watchForDeadPeer(m_socket);
    receive();
    if (m_rfc2217) {
        m_rfc2217->begin(settings);
        return flush();
    }
    m_graceTimer.expires_after(kGrace);
    m_graceTimer.async_wait([this](const ErrorCode& cancelled) {
        if (!cancelled)
            finishOpening({});
    });
}

void NetworkPort::finishOpening(const NetworkFailure& failure) {
    if (m_opened)
        std::exchange(m_opened, nullptr)(failure);
}

/// Evaluates the server's answers for the opening, and later for the open port.
void NetworkPort::judgeOpening() {
    if (!m_rfc2217)
        return;
    m_isDtrRefused = m_rfc2217->isDtrRefused();
    switch (m_rfc2217->state()) {
    case Rfc2217::State::Negotiating:
        return;
    case Rfc2217::State::Ready:
        return finishOpening({});
    case Rfc2217::State::NotSpoken:
        return finishOpening({NetworkFault::TelnetOnly});
    case Rfc2217::State::Refused:
        if (!m_opened)
            m_error = asio::error::operation_not_supported;
        return finishOpening({NetworkFault::SettingsRefused, m_rfc2217->refused()});
    }
}

void NetworkPort::judgeClosing() {
    m_graceTimer.cancel();
    std::string said = m_received;
    std::transform(said.begin(), said.end(), said.begin(),
                   [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
    const bool inUse = said.find("in use") != std::string::npos;
    finishOpening({inUse ? NetworkFault::InUse : NetworkFault::ClosedAtOnce, m_received});
}

bool NetworkPort::hasRoom() const {
    return m_received.size() - m_firstUnread < kMostWaiting && m_toSend.size() < kMostWaiting;
}

/// Requests more of the server's data while there is room and an opening or a reader needs it.
void NetworkPort::receive() {
    if (m_error || !hasRoom() || !(m_opened || m_reader) || std::exchange(m_isReceiving, true))
        return;
    m_socket.async_read_some(asio::buffer(m_wire),
                             [this](const ErrorCode& error, std::size_t count) { onReceived(error, count); });
}

void NetworkPort::onReceived(const ErrorCode& error, std::size_t count) {
    m_isReceiving = false;
    const std::span<const char> bytes(m_wire.data(), count);
    if (m_rfc2217)
        m_rfc2217->feed(bytes);
    else
        m_received.append(bytes.data(), bytes.size());
    flush();
    if (error)
        m_error = m_sendError ? m_sendError : error;
    if (error && m_opened)
        return judgeClosing();
    judgeOpening();
    deliver();
    receive();
}

void NetworkPort::readSome(std::span<char> into, Done done) {
    m_readInto = into;
    m_reader = std::move(done);
    if (isEverythingRead() && !m_error)
        receive();
    else
        asio::post(m_io, [this] { deliver(); });
}

void NetworkPort::deliver() {
    if (!m_reader || (isEverythingRead() && !m_error))
        return;
    const std::string_view unread = std::string_view(m_received).substr(m_firstUnread);
    const std::size_t count = std::min(unread.size(), m_readInto.size());
    std::copy_n(unread.begin(), count, m_readInto.begin());
    m_firstUnread += count;
    if (isEverythingRead()) {
        m_received.clear();
        m_firstUnread = 0;
    }
    // Data from before the end is still read.
    std::exchange(m_reader, nullptr)(count > 0 ? ErrorCode() : m_error, count);
}

void NetworkPort::writeSome(std::span<const char> bytes, Done done) {
    m_writer = std::move(done);
    m_written = bytes.size();
    m_writerIsFlying = false;
    if (m_rfc2217)
        m_rfc2217->send(bytes);
    else
        m_toSend.append(bytes.data(), bytes.size());
    flush();
}

/// Sends the commands and the line's bytes one after the other, so that neither interrupts the other.
void NetworkPort::flush() {
    if (!m_flying.empty() || m_toSend.empty())
        return;
    m_flying.swap(m_toSend);
    m_writerIsFlying = m_writer != nullptr;
    asio::async_write(m_socket, asio::buffer(m_flying),
                      [this](const ErrorCode& error, std::size_t /*count*/) { onFlushed(error); });
}

void NetworkPort::onFlushed(const ErrorCode& error) {
    m_flying.clear();
    if (error && !m_sendError) {
        m_sendError = error;
        ErrorCode ignored; // the reception ends, too, but after the server's last data
        m_socket.shutdown(Socket::shutdown_receive, ignored);
    }
    if (m_writer && (m_writerIsFlying || error))
        std::exchange(m_writer, nullptr)(error, error ? 0 : m_written);
    if (error)
        return;
    flush();
    receive();
}

void NetworkPort::cancel() noexcept {
    ErrorCode ignored;
    m_socket.cancel(ignored);
}

QString NetworkPort::goneText(const QString& port, const ErrorCode& error) const {
    return error == asio::error::operation_not_supported && m_rfc2217
               ? network_messages::refusedWhileOpen(port, m_address, m_rfc2217->refused())
               : network_messages::gone(port, m_address, error);
}

bool NetworkPort::setXonXoff(bool on) noexcept {
    if (m_rfc2217)
        asio::post(m_io, [this, on] {
            m_rfc2217->setXonXoff(on);
            flush();
        });
    return true;
}

bool NetworkPort::setDtr(bool on) {
    if (m_isDtrRefused)
        throw RuntimeFailure(FailureKind::WrongAnswer, network_messages::dtrRefused(m_address));
    if (m_rfc2217)
        asio::post(m_io, [this, on] {
            m_rfc2217->setDtr(on);
            flush();
        });
    return m_rfc2217.has_value();
}

std::size_t NetworkPort::unsentBytes() const noexcept {
    return unconfirmedBytes(const_cast<Socket&>(m_socket).native_handle());
}

} // namespace zrk
