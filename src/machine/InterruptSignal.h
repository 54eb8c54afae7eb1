#pragma once

#include <chrono>
#include <functional>
#include <memory>

namespace zrk {

class EventLoop;

/// A watch for Ctrl-C and for requests to end the program, on a thread of its own, which asks the program to
/// end. Ignored signals stay ignored. One per process; make it before any other thread is started, or hold()
/// the signals before that.
///
/// It ends the process by itself if the program fails to: on a second signal before the first was taken, if a
/// signal is not taken in time, if a request to end the program has not ended it in time, and as endAfter()
/// says. Before that it restores a terminal on standard input. On Windows the system has its own limits.
class InterruptSignal {
  public:
    static constexpr int kStatus = 130; ///< of a process that it ends on a signal

    struct Limits {
        /// Terminal and parent may both pass on one Ctrl-C: a second signal counts only after this.
        std::chrono::milliseconds untilSecond = std::chrono::seconds(1);
        std::chrono::milliseconds untilHeard = std::chrono::seconds(10);
        std::chrono::milliseconds untilEnded = std::chrono::seconds(30);
    };

    /// A signal that has come. It counts as taken as soon as no copy of it is left.
    struct Signal {
        bool isEnd = false; ///< a request to end the program: the user is not there to be asked
    };
    using Request = std::shared_ptr<const Signal>;
    /// Called on the signals' own thread, or by the constructor for signals that waited; must not block.
    using Handler = std::function<void(Request)>;

    /// Keeps the signals for this object, also from threads that a library starts before it; these would take
    /// them otherwise, which ends the program.
    static void hold();

    explicit InterruptSignal(Handler handler) : InterruptSignal(std::move(handler), Limits()) {}
    InterruptSignal(Handler handler, const Limits& limits);
    /// Runs `interrupted` in the loop; its argument is Signal::isEnd.
    InterruptSignal(EventLoop& loop, std::function<void(bool isEnd)> interrupted);
    ~InterruptSignal();
    InterruptSignal(const InterruptSignal&) = delete;
    InterruptSignal& operator=(const InterruptSignal&) = delete;

    /// Ends the process with this status if it has not ended in time by itself (see Limits) after this
    /// moment. Any thread may call it.
    void endAfter(std::chrono::steady_clock::time_point moment, int status);

  private:
    struct Private;
    std::unique_ptr<Private> m_private;
};

} // namespace zrk
