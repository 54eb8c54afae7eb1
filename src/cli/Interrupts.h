#pragma once

#include "machine/InterruptSignal.h"

#include <deque>
#include <functional>
#include <mutex>
#include <optional>
#include <vector>

namespace zrk {

class EventLoop;

/// The signals of the process, passed to the present part of the program. One that comes in between waits.
class Interrupts {
  public:
    using Request = InterruptSignal::Request;
    using Handler = InterruptSignal::Handler;

    Interrupts() : m_signal([this](Request request) { ask(std::move(request)); }) {}
    Interrupts(const Interrupts&) = delete;
    Interrupts& operator=(const Interrupts&) = delete;

    /// See InterruptSignal.
    void endAfter(std::chrono::steady_clock::time_point moment, int status) {
        m_signal.endAfter(moment, status);
    }

    /// Passes requests to the handler as long as it exists, on the signals' own thread. One at a time.
    class Direct {
      public:
        Direct(Interrupts& interrupts, Handler handler);
        ~Direct();
        Direct(const Direct&) = delete;
        Direct& operator=(const Direct&) = delete;

      private:
        Interrupts& m_interrupts;
    };

    /// A registration: as long as it exists, the handler gets the requests, in the loop. Requests that it has
    /// not taken by its end go to the next handler. One at a time.
    class InLoop {
      public:
        InLoop(Interrupts& interrupts, EventLoop& loop, Handler handler);
        ~InLoop();
        InLoop(const InLoop&) = delete;
        InLoop& operator=(const InLoop&) = delete;

      private:
        struct Queue {
            std::mutex mutex;
            std::deque<Request> requests; ///< guarded by mutex
            [[nodiscard]] Request take();
        };

        Interrupts& m_interrupts;
        std::shared_ptr<Queue> m_queue = std::make_shared<Queue>();
        std::optional<Direct> m_direct;
    };

  private:
    void ask(Request request);

    std::mutex m_mutex;
    // Guarded by m_mutex.
    Handler m_handler;
    std::vector<Request> m_waiting;

    InterruptSignal m_signal; // last: its thread uses the others
};

} // namespace zrk
