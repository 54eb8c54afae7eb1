#pragma once

#include "controls/Controls.h"
#include "platform/RuntimeFailure.h"
#include "serial/SharedState.h"

#include <functional>

namespace zrk {

class ComPort;
class MessageBoxes;
class StatusConsole;
class Transport;

/// How an operation ended; the command line turns it into its exit status.
enum class Outcome {
    Done,
    Rejected,      ///< the addresses were refused; nothing was sent
    PortNotOpened, ///< the port could not be opened
    NoAnswer,      ///< the reply time-out ran out
    WrongAnswer,   ///< a wrong character or a refusal
    PortLost,
    Cancelled,
    Failed, ///< any other run-time failure, such as an unreadable file
};

/// What all long operations share: the mark of a running operation, the failure handler and the record
/// of how the last one ended.
class LongOperation {
  public:
    /// How the body of an operation ended by itself.
    enum class End {
        Done,
        Rejected,
        Stopped, ///< ended on its success path, but a confirmed cancel had cut a transfer short
        Abort,
    };

    LongOperation(SharedState& state, ComPort& port, StatusConsole& console, Transport& transport,
                  MessageBoxes& boxes);

    /// Runs `body` under the failure handler, then `abort` when the body asked for it or failed.
    /// Throws nothing. With DebugMode set from the start a failure is told in the console instead of a
    /// message box. Does nothing while an operation runs.
    void run(const std::function<End()>& body, const std::function<void()>& abort);

    /// Marks the operation as running and clears an old request to cancel.
    void begin();

    /// Ends the mark.
    void finish();

    /// The abort sequence: closes the port, says so, disarms the reply timer, ends the operation and
    /// enables the button that started it. Yields.
    void abort(CommandButton& startButton);

    [[nodiscard]] Outcome outcome() const { return m_outcome; }

  private:
    void reportFailure(const RuntimeFailure& failure, bool handlerInstalled);
    [[nodiscard]] Outcome abortedOutcome() const;
    [[nodiscard]] Outcome failedOutcome(FailureKind kind) const;

    SharedState& m_state;
    ComPort& m_port;
    StatusConsole& m_console;
    Transport& m_transport;
    MessageBoxes& m_boxes;
    Outcome m_outcome = Outcome::Done;
    bool m_running = false;
};

} // namespace zrk
