#pragma once

#include <functional>
#include <memory>

namespace zrk {

class EventLoop;

/// Brings Ctrl-C and a request to end the program into the event loop, where `interrupted` runs; its
/// argument is true for the latter, when nobody is there any more. Signals that are ignored stay so.
/// Make it before any other thread is started, or hold() the signals before that; one per process.
class InterruptSignal {
  public:
    /// Has the signals wait for one who takes them, also for the sake of threads that a library starts before
    /// that; these would take them otherwise, which ends the program.
    static void hold();

    InterruptSignal(EventLoop& loop, std::function<void(bool ended)> interrupted);
    ~InterruptSignal();
    InterruptSignal(const InterruptSignal&) = delete;
    InterruptSignal& operator=(const InterruptSignal&) = delete;

  private:
    struct Private;
    std::unique_ptr<Private> m_private;
};

} // namespace zrk
