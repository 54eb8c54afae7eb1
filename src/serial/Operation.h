#pragma once

#include "controls/Desk.h"
#include "platform/RuntimeFailure.h"
#include "serial/PortErrors.h"

#include <functional>

namespace zrk {

class ComPort;
class StatusConsole;
class Transport;

/// The one gate for whatever uses the port for longer than a moment. It lets one operation in at a time,
/// catches what goes wrong in it, and keeps how it ended.
class Operation {
  public:
    /// How the body of an operation ended by itself.
    enum class End {
        Done,
        Rejected,
        Stopped, ///< on its success path, but something cut it short; SharedState::StopReason tells what
        Abort,
    };

    /// How a failure is told to the user.
    enum class Report {
        DownloadProblem, ///< message box: "or other download problem"
        IoProblem,       ///< message box: "or other I/O problem"
        InConsole,
        Nothing,
    };

    struct Plan {
        std::function<End()> body;
        std::function<void()> abort; ///< brings it down after End::Abort or a failure
        Report report = Report::DownloadProblem;
        /// What has been achieved after End::Done, in `time` since the first code byte, for the first status
        /// panel. Without it the end, whatever it is, leaves no remark.
        std::function<QString(const QString& time)> achievement = {};
    };

    Operation(Desk& desk, ComPort& port, StatusConsole& console, Transport& transport);

    /// Runs the body, and its abort when the body asks for it or fails. Throws nothing, yields. With
    /// DebugMode set from the start a failure is told in the console instead of a message box. Does nothing
    /// while another one runs, which may well be further up the stack.
    void run(const Plan& plan);

    /// The same for a body that needs no more than the mark around it, and tells no failure: begin() before
    /// it, finish() behind it, however it ends.
    void runMarked(const std::function<End()>& body);

    /// True while run() is under way, also before the body has marked itself with begin().
    [[nodiscard]] bool isRunning() const { return m_running || m_desk.state.OperationActive; }

    /// Marks the operation as active: Cancel now requests a stop. Forgets what an earlier one left behind.
    void begin();

    /// Ends the mark.
    void finish();

    /// The abort sequence: closes the port, says so, disarms the reply timer, ends the operation and
    /// enables the button that started it. Yields.
    void abort(CommandButton& startButton);

    /// From now on, if not already in this operation, bytes that the line damages count: nothing has to be
    /// told of the noise of a power-on.
    void watchLine();

    /// Ends the running body as `why`, unless something else has asked it to stop before, with a description
    /// of the failure.
    [[noreturn]] void fail(Outcome why, const QString& description);

    /// How the last one ended.
    [[nodiscard]] Outcome outcome() const { return m_outcome; }

    /// The description of the failure that ended the last one; "" when none did.
    [[nodiscard]] const QString& failure() const { return m_failure; }

  private:
    [[nodiscard]] End carryOut(const Plan& plan, Report how);
    void remark(const Plan& plan) const;
    [[nodiscard]] Outcome endedBy(End end) const;
    [[nodiscard]] Outcome failedBy(FailureKind kind) const;
    void report(const RuntimeFailure& failure, Report how);
    void tellLineErrors();

    Desk& m_desk;
    ComPort& m_port;
    StatusConsole& m_console;
    Transport& m_transport;
    Outcome m_outcome = Outcome::Done;
    QString m_failure;
    bool m_running = false;
    bool m_watchesLine = false;
};

} // namespace zrk
