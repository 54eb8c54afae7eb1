#include "machine/MachinePorts.h"

#include "machine/NativePort.h"
#include "machine/NetworkAddress.h"
#include "machine/NetworkOpening.h"
#include "machine/PortDriver.h"
#include "machine/PortMessages.h"
#include "machine/SystemPorts.h"
#include "platform/RuntimeFailure.h"

#include <QScopedValueRollback>

#include <boost/system/system_error.hpp>

#include <system_error>

namespace zrk {
namespace {

/// Returns what a line with these settings carries: a start bit, data, parity and stop bits for each byte.
std::uint32_t bytesPerSecond(const LineSettings& settings) {
    const int bits = 1 + settings.dataBits + (settings.parity == 'N' ? 0 : 1) + settings.stopBits;
    return static_cast<std::uint32_t>(settings.baudRate / bits);
}

[[noreturn]] void refuseToOpen(const QString& why) {
    throw RuntimeFailure(FailureKind::PortNotOpened, why);
}

std::unique_ptr<SerialPort> openNative(EventLoop& loop, const QString& device, const QString& port,
                                       const PortDriver::Limits& limits, const LineSettings& settings,
                                       Handshaking handshaking) {
    auto driver = std::make_unique<PortDriver>(loop, port, limits);
    auto native = std::make_unique<NativePort>(driver->io());
    OpenResult result = native->open(device.toLocal8Bit().toStdString());
    if (result.fault == OpenFault::InUse && result.user.empty())
        result.user = otherUserOf(device).toStdString();
    if (result.fault != OpenFault::None)
        refuseToOpen(port_messages::cannotOpen(port, result));
    if (!native->applySettings(settings))
        refuseToOpen(port_messages::settingsRefused(port, settings));
    if (!native->holdLines(settings))
        refuseToOpen(port_messages::noModemLine(port));
    driver->start(std::move(native));
    driver->serve(handshaking);
    return driver;
}

} // namespace

MachinePorts::MachinePorts(EventLoop& loop, PortNames names)
    : MachinePorts(loop, std::move(names), Options{}) {}

MachinePorts::MachinePorts(EventLoop& loop, PortNames names, Options options)
    : m_loop(loop), m_names(std::move(names)), m_options(options) {}

std::unique_ptr<SerialPort> MachinePorts::open(int number, const LineSettings& asked,
                                               Handshaking handshaking) {
    LineSettings settings = asked;
    settings.dtr = m_options.dtr;
    settings.rts = m_options.rts;
    if (number < PortNames::kLowest || number > PortNames::kHighest)
        refuseToOpen(port_messages::noSuchNumber(number));
    const QString device = m_names.device(number);
    if (device.isEmpty())
        refuseToOpen(port_messages::noDevice(number));
    const PortDriver::Limits limits{m_options.stallLimit, m_options.receiveLimit,
                                    m_options.lineRate.value_or(bytesPerSecond(settings))};
    const QString port = port_messages::portName(number, device);
    if (const QString problem = networkProblem(device); !problem.isEmpty())
        refuseToOpen(port_messages::badName(number, problem));
    try {
        if (const auto address = NetworkAddress::parse(device)) {
            NetworkOpening opening(m_loop, *address, port, limits);
            const QScopedValueRollback noted(m_opening, &opening);
            return opening.run(settings, handshaking);
        }
        return openNative(m_loop, device, port, limits, settings, handshaking);
    } catch (const std::system_error& error) { // no thread
        refuseToOpen(port_messages::cannotOpen(port, {OpenFault::Scarce, error.code().message()}));
    } catch (const boost::system::system_error& error) { // no descriptor
        refuseToOpen(port_messages::cannotOpen(port, {OpenFault::Scarce, error.code().message()}));
    }
}

std::optional<bool> MachinePorts::isThere(int number) const {
    const QString device = m_names.device(number);
    return isOnNetwork(device) ? std::nullopt : std::optional(isInstalled(device));
}

QString MachinePorts::notice(int number) const {
    const QString device = m_names.device(number);
    QStringList notices;
    if (m_names.isFallback(number))
        notices += port_messages::fallback(number, device);
    if (const QString user = otherUserOf(device); !user.isEmpty())
        notices += port_messages::alsoUsed(port_messages::portName(number, device), user);
    return notices.join(QLatin1Char(' '));
}

void MachinePorts::giveUp() {
    if (m_opening != nullptr)
        m_opening->giveUp();
}

} // namespace zrk
