#include "machine/MachinePorts.h"

#include "machine/PortDriver.h"
#include "machine/PortMessages.h"
#include "platform/RuntimeFailure.h"

namespace zrk {
namespace {

/// What a line with these settings carries: a start bit, data, parity and stop bits for each byte.
std::uint32_t bytesPerSecond(const LineSettings& settings) {
    const int bits = 1 + settings.dataBits + (settings.parity == 'N' ? 0 : 1) + settings.stopBits;
    return static_cast<std::uint32_t>(settings.baudRate / bits);
}

} // namespace

MachinePorts::MachinePorts(EventLoop& loop, PortNames names)
    : MachinePorts(loop, std::move(names), Options{}) {}

MachinePorts::MachinePorts(EventLoop& loop, PortNames names, Options options)
    : m_loop(loop), m_names(std::move(names)), m_options(options) {}

std::unique_ptr<SerialPort> MachinePorts::open(int number, const LineSettings& settings,
                                               Handshaking handshaking) {
    const auto refuse = [](const QString& why) { throw RuntimeFailure(FailureKind::PortNotOpened, why); };
    if (number < PortNames::kLowest || number > PortNames::kHighest)
        refuse(port_messages::noSuchNumber(number));
    const QString device = m_names.device(number);
    if (device.isEmpty())
        refuse(port_messages::noDevice(number));
    const PortDriver::Limits limits{m_options.stallLimit, m_options.receiveLimit,
                                    m_options.lineRate.value_or(bytesPerSecond(settings))};
    auto driver = std::make_unique<PortDriver>(m_loop, port_messages::portName(number, device), limits);
    driver->open(device, settings, handshaking);
    return driver;
}

} // namespace zrk
