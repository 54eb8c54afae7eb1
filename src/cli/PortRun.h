#pragma once

#include "cli/ExitStatus.h"
#include "cli/Output.h"

#include <functional>

namespace zrk {

class Report;
class Session;
struct CliOptions;

/// The runs at one port: one board, or with --repeat one after another, each with its end on the screen, in
/// the events, the transcript and the report.
class PortRun {
  public:
    /// All of them must outlive it.
    PortRun(const CliOptions& options, Output& output, const Report& report)
        : m_options(options), m_output(output), m_report(report) {}

    /// Runs the session's steps for each board, yielding. With --repeat it returns after an interrupt, and
    /// after an end that the next board would have as well. Throws UsageError as Session::run().
    void run(Session& session);

    /// Ends a board without a session. The errors have been printed.
    void endEarly(ExitStatus status);

    /// Returns the board that ended last.
    [[nodiscard]] const Ending& ending() const { return m_ending; }
    [[nodiscard]] const Tally& tally() const { return m_tally; }
    /// Returns the highest exit status of the port's boards.
    [[nodiscard]] int status() const { return m_worst; }

  private:
    void finish(Ending ending, QJsonObject record);
    void tellEnd();

    const CliOptions& m_options;
    Output& m_output;
    const Report& m_report;
    Ending m_ending;
    Tally m_tally;
    int m_worst = 0;
};

} // namespace zrk
