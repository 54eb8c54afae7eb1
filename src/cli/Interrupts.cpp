#include "cli/Interrupts.h"

#include "platform/EventLoop.h"

#include <utility>

namespace zrk {

void Interrupts::ask(Request request) {
    const std::scoped_lock lock(m_mutex);
    if (m_handler)
        m_handler(std::move(request));
    else
        m_waiting.push_back(std::move(request));
}

Interrupts::Direct::Direct(Interrupts& interrupts, Handler handler) : m_interrupts(interrupts) {
    const std::scoped_lock lock(interrupts.m_mutex);
    interrupts.m_handler = std::move(handler);
    for (Request& request : std::exchange(interrupts.m_waiting, {}))
        interrupts.m_handler(std::move(request));
}

Interrupts::Direct::~Direct() {
    const std::scoped_lock lock(m_interrupts.m_mutex);
    m_interrupts.m_handler = nullptr;
}

Interrupts::InLoop::InLoop(Interrupts& interrupts, EventLoop& loop, Handler handler)
    : m_interrupts(interrupts) {
    m_direct.emplace(interrupts, [&loop, handler = std::move(handler), queue = m_queue](Request request) {
        {
            const std::scoped_lock lock(queue->mutex);
            queue->requests.push_back(std::move(request));
        }
        loop.post([handler, queue = std::weak_ptr(queue)] {
            const auto present = queue.lock();
            Request next = present ? present->take() : nullptr;
            if (next)
                handler(std::move(next));
        });
    });
}

Interrupts::InLoop::~InLoop() {
    m_direct.reset();
    while (Request request = m_queue->take())
        m_interrupts.ask(std::move(request));
}

Interrupts::Request Interrupts::InLoop::Queue::take() {
    const std::scoped_lock lock(mutex);
    if (requests.empty())
        return nullptr;
    Request first = std::move(requests.front());
    requests.pop_front();
    return first;
}

} // namespace zrk
