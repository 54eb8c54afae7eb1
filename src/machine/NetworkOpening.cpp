#include "machine/NetworkOpening.h"

#include "machine/NetworkPort.h"
#include "platform/EventLoop.h"
#include "platform/RuntimeFailure.h"

#include <boost/asio/post.hpp>

namespace zrk {

using namespace std::chrono_literals;

namespace {

constexpr std::chrono::milliseconds kLimit = 5s;
// A server releases its device some time after the connection before has ended, which may be this program's.
constexpr std::chrono::milliseconds kWhileInUse = 2s;

/// The driver's thread's result of the opening.
struct Answer {
    std::mutex mutex;
    std::optional<NetworkFailure> failure;

    [[nodiscard]] bool isThere() {
        const std::lock_guard lock(mutex);
        return failure.has_value();
    }
};

} // namespace

NetworkOpening::NetworkOpening(EventLoop& loop, NetworkAddress address, QString port,
                               PortDriver::Limits limits)
    : m_loop(loop), m_address(std::move(address)), m_port(std::move(port)), m_limits(limits),
      m_end(loop.now() + kLimit) {}

std::unique_ptr<PortDriver> NetworkOpening::run(const LineSettings& settings, Handshaking handshaking) {
    const auto endpoints = lookUp();
    const auto triesUntil = m_loop.now() + kWhileInUse;
    for (;;) {
        const NetworkFailure failure = connect(endpoints, settings);
        if (failure.fault == NetworkFault::None) {
            m_driver->serve(handshaking);
            return std::move(m_driver);
        }
        if (failure.fault != NetworkFault::InUse || m_loop.now() >= triesUntil)
            fail(failure);
        (void)waitFor([end = m_loop.now() + EventLoop::kLook, this] { return m_loop.now() >= end; });
    }
}

/// Makes one attempt.
NetworkFailure NetworkOpening::connect(const NameLookup::Endpoints& endpoints, const LineSettings& settings) {
    // Shared with the thread: an answer that comes too late is still written there.
    const auto answer = std::make_shared<Answer>();
    const auto opened = [answer, &loop = m_loop](const NetworkFailure& told) {
        {
            const std::lock_guard lock(answer->mutex);
            answer->failure = told;
        }
        loop.wake();
    };
    m_driver = std::make_unique<PortDriver>(m_loop, m_port, m_limits);
    auto device = std::make_unique<NetworkPort>(m_driver->io(), m_address);
    NetworkPort& port = *device;
    m_driver->start(std::move(device));
    boost::asio::post(m_driver->io(),
                      [&port, &endpoints, &settings, opened] { port.open(endpoints, settings, opened); });
    if (!waitFor([&] { return answer->isThere(); }))
        return {port.isConnected() ? NetworkFault::NotRfc2217 : NetworkFault::NoAnswer};
    return *answer->failure;
}

NameLookup::Endpoints NetworkOpening::lookUp() {
    NameLookup lookup(m_address, [&loop = m_loop] { loop.wake(); });
    if (!waitFor([&] { return lookup.isFinished(); }))
        fail({NetworkFault::UnknownHost, "no answer within 5 s"});
    if (lookup.error() || lookup.endpoints().empty())
        fail({NetworkFault::UnknownHost, lookup.error().message()});
    return lookup.endpoints();
}

/// Returns false if the time is over.
bool NetworkOpening::waitFor(const std::function<bool()>& condition) {
    const auto look = m_loop.wakeEvery(EventLoop::kLook);
    for (;;) {
        if (m_isGivenUp)
            throw RuntimeFailure(FailureKind::Cancelled, network_messages::givenUp(m_port));
        if (condition())
            return true;
        if (m_loop.now() >= m_end)
            return false;
        m_loop.wait();
    }
}

void NetworkOpening::giveUp() {
    m_isGivenUp = true;
    m_driver.reset();
    m_loop.wake();
}

void NetworkOpening::fail(const NetworkFailure& failure) const {
    throw RuntimeFailure(FailureKind::PortNotOpened,
                         network_messages::cannotOpen(m_port, m_address, failure));
}

} // namespace zrk
