#pragma once

#include "machine/NameLookup.h"
#include "machine/NetworkMessages.h"
#include "machine/PortDriver.h"

#include <functional>

namespace zrk {

/// An opening of a port on the network, in at most 5 s, while the event loop goes on.
class NetworkOpening {
  public:
    /// `port` is the name in messages.
    NetworkOpening(EventLoop& loop, NetworkAddress address, QString port, PortDriver::Limits limits);

    /// Throws RuntimeFailure: PortNotOpened, or Cancelled after giveUp(). Yields.
    [[nodiscard]] std::unique_ptr<PortDriver> run(const LineSettings& settings, Handshaking handshaking);

    /// Ends run(), which is further up the stack, and drops its connection at once: run() may return only
    /// after another port, maybe the same one, has been opened and used.
    void giveUp();

  private:
    [[nodiscard]] NameLookup::Endpoints lookUp();
    [[nodiscard]] NetworkFailure connect(const NameLookup::Endpoints& endpoints,
                                         const LineSettings& settings);
    [[nodiscard]] bool waitFor(const std::function<bool()>& condition);
    [[noreturn]] void fail(const NetworkFailure& failure) const;

    EventLoop& m_loop;
    const NetworkAddress m_address;
    const QString m_port;
    const PortDriver::Limits m_limits;
    const std::chrono::steady_clock::time_point m_end;
    std::unique_ptr<PortDriver> m_driver; ///< of the latest attempt
    bool m_isGivenUp = false;
};

} // namespace zrk
