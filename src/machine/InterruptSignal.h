#pragma once

#include <chrono>
#include <functional>
#include <memory>

namespace zrk {

class EventLoop;

/// Watches for Ctrl-C and for requests to end the program, on a thread of its own, and asks the program to
/// end. Signals that are ignored stay so. One per process; make it before any other thread is started, or
/// hold() the signals before that.
///
/// It ends the process by itself where the program cannot any more: on a second signal while the first has
/// not been heard, when one is not heard in time, when a request to end the program has not ended it in time,
/// and as endAfter() says. A terminal on standard input is set back before that. On Windows the system has
/// its own limits.
class InterruptSignal {
  public:
    static constexpr int kStatus = 130; ///< of a process that it ends on a signal

    struct Limits {
        /// The terminal and a parent process may both pass on one Ctrl-C: no second signal before that.
        std::chrono::milliseconds untilSecond = std::chrono::seconds(1);
        std::chrono::milliseconds untilHeard = std::chrono::seconds(10);
        std::chrono::milliseconds untilEnded = std::chrono::seconds(30);
    };

    /// A signal that has come. It counts as heard as soon as no copy of it is left.
    struct Signal {
        bool isEnd = false; ///< a request to end the program: nobody is there any more to be asked
    };
    using Request = std::shared_ptr<const Signal>;
    /// Called on the signals' own thread, or by the constructor for signals that waited; must not block.
    using Handler = std::function<void(Request)>;

    /// Has the signals wait for this object, also for the sake of threads that a library starts before that;
    /// these would take them otherwise, which ends the program.
    static void hold();

    explicit InterruptSignal(Handler handler) : InterruptSignal(std::move(handler), Limits()) {}
    InterruptSignal(Handler handler, const Limits& limits);
    /// Runs `interrupted` in the loop; its argument is Signal::isEnd.
    InterruptSignal(EventLoop& loop, std::function<void(bool isEnd)> interrupted);
    ~InterruptSignal();
    InterruptSignal(const InterruptSignal&) = delete;
    InterruptSignal& operator=(const InterruptSignal&) = delete;

    /// Ends the process with this status if it has not ended in time by itself (see Limits) after this
    /// moment. Safe from any thread.
    void endAfter(std::chrono::steady_clock::time_point moment, int status);

  private:
    struct Private;
    std::unique_ptr<Private> m_private;
};

} // namespace zrk
