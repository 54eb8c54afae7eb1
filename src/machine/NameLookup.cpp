#include "machine/NameLookup.h"

#include <boost/asio/io_context.hpp>

#include <mutex>
#include <thread>

namespace zrk {

namespace asio = boost::asio;
using asio::ip::tcp;

struct NameLookup::State {
    mutable std::mutex mutex;
    std::function<void()> finished; ///< null once it was called, or no caller waits
    bool isFinished = false;
    Endpoints endpoints;
    boost::system::error_code error;
};

NameLookup::NameLookup(const NetworkAddress& address, std::function<void()> finished)
    : m_state(std::make_shared<State>()) {
    m_state->finished = std::move(finished);
    std::thread([state = m_state, host = address.host.toStdString(), port = std::to_string(address.port)] {
        asio::io_context io;
        boost::system::error_code error;
        const auto found = tcp::resolver(io).resolve(host, port, tcp::resolver::numeric_service, error);
        const std::lock_guard lock(state->mutex);
        for (const auto& entry : found)
            state->endpoints.push_back(entry.endpoint());
        state->error = error;
        state->isFinished = true;
        if (state->finished)
            state->finished();
    }).detach();
}

NameLookup::~NameLookup() {
    const std::lock_guard lock(m_state->mutex);
    m_state->finished = nullptr;
}

bool NameLookup::isFinished() const {
    const std::lock_guard lock(m_state->mutex);
    return m_state->isFinished;
}

const NameLookup::Endpoints& NameLookup::endpoints() const {
    return m_state->endpoints;
}

const boost::system::error_code& NameLookup::error() const {
    return m_state->error;
}

} // namespace zrk
