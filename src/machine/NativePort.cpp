#include "machine/NativePort.h"

#include "machine/PortMessages.h"

namespace zrk {

namespace asio = boost::asio;
using ErrorCode = boost::system::error_code;

void NativePort::readSome(std::span<char> into, Done done) {
    m_stream.async_read_some(asio::buffer(into.data(), into.size()), std::move(done));
}

void NativePort::writeSome(std::span<const char> bytes, Done done) {
    m_isWriting = true;
    m_stream.async_write_some(asio::buffer(bytes.data(), bytes.size()),
                              [this, done = std::move(done)](const ErrorCode& error, std::size_t count) {
                                  m_isWriting = false;
                                  done(error, count);
                              });
}

void NativePort::cancel() noexcept {
    ErrorCode ignored;
    m_stream.cancel(ignored);
}

QString NativePort::goneText(const QString& port, const ErrorCode& error) const {
    return port_messages::gone(port, error == asio::error::eof ? QStringLiteral("the line was hung up")
                                                               : QString::fromLocal8Bit(error.message()));
}

} // namespace zrk
