#include "machine/NativePort.h"

#include "machine/PortMessages.h"
#include "platform/SerialPort.h"

namespace zrk {

namespace asio = boost::asio;
using ErrorCode = boost::system::error_code;

bool NativePort::applySettings(const LineSettings& settings) {
    using Options = asio::serial_port_base;
    const auto parity = settings.parity == 'E'   ? Options::parity::even
                        : settings.parity == 'O' ? Options::parity::odd
                                                 : Options::parity::none;
    const auto stopBits = settings.stopBits == 2 ? Options::stop_bits::two : Options::stop_bits::one;
    bool accepted = settings.dataBits >= 5 && settings.dataBits <= 8 && settings.baudRate > 0;
    const auto apply = [&](const auto& option) {
        ErrorCode error;
        accepted = accepted && !m_stream.set_option(option, error);
    };
    apply(Options::baud_rate(static_cast<unsigned>(settings.baudRate)));
    apply(Options::character_size(accepted ? static_cast<unsigned>(settings.dataBits) : 8));
    apply(Options::parity(parity));
    apply(Options::stop_bits(stopBits));
    return accepted;
}

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
