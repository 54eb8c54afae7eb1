#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <optional>

namespace zrk {

class EventLoop;

/// Watches for Ctrl-C and for requests to end the program, and asks it to end. Signals that are ignored stay so.
/// One per process; make it before any other thread is started, or hold() the signals before that.
///
/// It does so on a thread of its own, and ends the process itself where nothing else can any more: on a second
/// signal while the first has not been heard, when one is not heard within kReactionLimit, when a request to end
/// the program has not done so within kEndLimit, and at the time of endAt(). A terminal on standard input is set
/// back before that. (On Windows the system does this.)
class InterruptSignal {
  public:
    static constexpr int kStatus = 130; ///< that the process is ended with
    static constexpr std::chrono::seconds kReactionLimit{5};
    static constexpr std::chrono::seconds kEndLimit{30};

    /// A signal that has come. It counts as heard when no copy is left.
    class Request {
      public:
        explicit Request(bool isEnd) : m_isEnd(isEnd) {}
        /// True for a request to end the program, when nobody is there any more to be asked.
        [[nodiscard]] bool isEnd() const { return m_isEnd; }

      private:
        bool m_isEnd;
    };
    using Asked = std::function<void(std::shared_ptr<const Request>)>;

    /// Has the signals wait for this object, also for the sake of threads that a library starts before that;
    /// these would take them otherwise, which ends the program.
    static void hold();

    /// `asked` is called on the signals' own thread.
    explicit InterruptSignal(Asked asked);
    /// `interrupted` runs in the loop; its argument is isEnd().
    InterruptSignal(EventLoop& loop, std::function<void(bool isEnd)> interrupted);
    ~InterruptSignal();
    InterruptSignal(const InterruptSignal&) = delete;
    InterruptSignal& operator=(const InterruptSignal&) = delete;

    /// Ends the process at that time, with that status. Safe from any thread.
    void endAt(std::chrono::steady_clock::time_point time, int status);

  private:
    struct Private;
    std::unique_ptr<Private> m_private;
};

} // namespace zrk
