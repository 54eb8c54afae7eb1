#pragma once

#include "controls/Desk.h"
#include "platform/RuntimeFailure.h"
#include "serial/PortErrors.h"

#include <functional>

namespace zrk {

class ComPort;
class StatusConsole;
class Transport;

/// The gate for everything that uses the port for longer than a moment. It admits one operation at a time,
/// catches its failures, and keeps its outcome.
///
///     Operation::End erase() {            // the body
///         m_link.operation.begin();       // marks it as active, after the checks
///         m_link.port.OpenComPort();      // a failure runs the abort
///         m_link.transport.SendString(QStringLiteral("e"));
///         if (!m_link.transport.ExpectChar(QStringLiteral("o")))
///             return Operation::End::Abort;
///         m_link.operation.finish();
///         return Operation::End::Done;
///     }
///
///     m_link.operation.run({[this] { return erase(); },
///                           [this] { m_link.operation.abort(m_link.controls.cmdPrgFlash); }});
///     m_link.operation.outcome();         // Done, WrongAnswer, Cancelled, ...
class Operation {
  public:
    /// The way in which the body of an operation ended by itself.
    enum class End {
        Done,
        Rejected,
        Stopped, ///< on its success path, but cut short; SharedState::StopReason says why
        Abort,
    };

    /// The way to report a failure to the user.
    enum class Report {
        DownloadProblem, ///< message box: "or other download problem"
        IoProblem,       ///< message box: "or other I/O problem"
        InConsole,
        Nothing,
    };

    struct Plan {
        std::function<End()> body;
        std::function<void()> abort; ///< runs after End::Abort or a failure
        Report report = Report::DownloadProblem;
        /// Returns a sentence on the success after End::Done, in `time` since the first code byte, for the
        /// first status panel. Without it the end leaves no remark.
        std::function<QString(const QString& time)> achievement = {};
    };

    Operation(Desk& desk, ComPort& port, StatusConsole& console, Transport& transport);

    /// Runs the body, and its abort if the body asks for it or fails. Throws nothing, yields. If DebugMode
    /// was set from the start, the console reports a failure instead of a message box. Does nothing while
    /// another one runs, which may well be further up the stack.
    void run(const Plan& plan);

    /// Does the same for a body that needs only the mark around it, and reports no failure: begin() before
    /// it, finish() after it, however it ends. Yields.
    void runMarked(const std::function<End()>& body);

    /// Returns true while run() is under way, also before the body has marked itself with begin().
    [[nodiscard]] bool isRunning() const { return m_running || m_desk.state.OperationActive; }

    /// Marks the operation as active: Cancel now requests a stop. Forgets what an earlier one left.
    void begin();

    /// Marks the operation as ended.
    void finish();

    /// Runs the abort sequence: closes the port, prints that, disarms the reply timer, ends the operation and
    /// enables the button that started it. Yields.
    void abort(CommandButton& startButton);

    /// Starts counting damaged bytes, once per operation: the noise of a power-on needs no report.
    void watchLine();

    /// Ends the running body as `why`, unless another reason to stop came before, with a description of the
    /// failure.
    [[noreturn]] void fail(Outcome why, const QString& description);

    /// Returns how the last one ended.
    [[nodiscard]] Outcome outcome() const { return m_outcome; }

    /// Returns the description of the failure that ended the last one; "" if none did.
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
