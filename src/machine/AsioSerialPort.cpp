#include "machine/AsioSerialPort.h"

#include "machine/PortDriver.h"
#include "machine/PortMessages.h"
#include "platform/RuntimeFailure.h"

namespace zrk {

AsioSerialPort::AsioSerialPort(EventLoop& loop, PortNames names)
    : AsioSerialPort(loop, std::move(names), Options{}) {}

AsioSerialPort::AsioSerialPort(EventLoop& loop, PortNames names, Options options)
    : m_loop(loop), m_names(std::move(names)), m_options(options) {}

AsioSerialPort::~AsioSerialPort() = default;

void AsioSerialPort::open(int number, const LineSettings& settings) {
    const auto refuse = [](const QString& why) { throw RuntimeFailure(FailureKind::PortNotOpened, why); };
    if (m_driver)
        refuse(port_messages::alreadyOpen(m_driver->portName()));
    if (number < PortNames::kLowest || number > PortNames::kHighest)
        refuse(port_messages::noSuchNumber(number));
    const QString device = m_names.device(number);
    if (device.isEmpty())
        refuse(port_messages::noDevice(number));
    auto driver =
        std::make_unique<PortDriver>(m_loop, port_messages::portName(number, device),
                                     PortDriver::Limits{m_options.stallLimit, m_options.receiveLimit});
    driver->open(device, settings, m_handshaking);
    m_driver = std::move(driver);
}

void AsioSerialPort::close() noexcept {
    m_driver.reset();
}

bool AsioSerialPort::isOpen() const noexcept {
    return m_driver != nullptr;
}

bool AsioSerialPort::isLost() const noexcept {
    return m_driver && m_driver->isLost();
}

QString AsioSerialPort::deviceName(int number) const {
    return m_names.device(number);
}

qsizetype AsioSerialPort::bytesWaiting() {
    return driver().bytesWaiting();
}

QByteArray AsioSerialPort::read(qsizetype most) {
    return driver().read(most);
}

void AsioSerialPort::skip(char byte) {
    driver().skip(byte);
}

void AsioSerialPort::write(QByteArrayView bytes) {
    driver().write(bytes);
}

qsizetype AsioSerialPort::transmitRoom() {
    return driver().transmitRoom();
}

qsizetype AsioSerialPort::unsentBytes() const noexcept {
    return m_driver ? m_driver->unsentBytes() : 0;
}

void AsioSerialPort::setHandshaking(Handshaking handshaking) {
    m_handshaking = handshaking;
    if (!m_driver)
        return;
    m_driver->setHandshaking(handshaking);
    (void)m_driver->transmitRoom(); // throws when the device is gone
}

bool AsioSerialPort::setDtr(bool on) {
    return m_driver && m_driver->setDtr(on);
}

bool AsioSerialPort::drain(std::chrono::milliseconds limit) {
    return !m_driver || m_driver->drain(limit);
}

PortDriver& AsioSerialPort::driver() const {
    if (!m_driver)
        throw RuntimeFailure(FailureKind::PortNotOpen, port_messages::notOpen());
    return *m_driver;
}

} // namespace zrk
