#pragma once

#include "machine/NetworkAddress.h"

#include <boost/asio/ip/tcp.hpp>

#include <functional>
#include <memory>
#include <vector>

namespace zrk {

/// A look-up of a host's addresses on a thread of its own, since the system's resolver may take half a minute
/// and cannot be stopped. To stop waiting, destroy this, and the thread ends by itself.
class NameLookup {
  public:
    using Endpoints = std::vector<boost::asio::ip::tcp::endpoint>;

    /// Calls `finished` on that thread, but not after this was destroyed.
    NameLookup(const NetworkAddress& address, std::function<void()> finished);
    ~NameLookup();
    NameLookup(const NameLookup&) = delete;
    NameLookup& operator=(const NameLookup&) = delete;

    [[nodiscard]] bool isFinished() const;

    // Returns them after it has finished.
    [[nodiscard]] const Endpoints& endpoints() const;
    [[nodiscard]] const boost::system::error_code& error() const;

  private:
    struct State;
    std::shared_ptr<State> m_state;
};

} // namespace zrk
