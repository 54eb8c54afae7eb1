#pragma once

#include "cli/ExitStatus.h"
#include "cli/MessageLines.h"
#include "cli/Options.h"
#include "cli/Output.h"
#include "cli/Plan.h"
#include "cli/PowerOnNotice.h"
#include "cli/ProgressLines.h"
#include "cli/RecordCheck.h"
#include "cli/SentLines.h"
#include "loader/Loader.h"
#include "loader/ThisProgram.h"
#include "machine/MachinePorts.h"
#include "machine/TracedPorts.h"
#include "machine/YesNoQuestion.h"
#include "platform/ProgramFacts.h"

#include <QJsonArray>
#include <QJsonObject>

namespace zrk {

/// A run of the command line for one board: a loader without a window, and its steps, on one thread.
class Session {
  public:
    /// Reads images through the store, which other boards may use, too.
    Session(const CliOptions& options, const ProgramFacts& facts, EventLoop& loop, Output& output,
            std::shared_ptr<ImageStore> images);

    enum class Remarks { Tell, AreKnown };

    /// Presets the slots, prints warnings on the configuration, reads the images whole, and checks all that
    /// shows before anything is sent. Throws UsageError for a configuration that cannot work.
    void prepare(Remarks remarks = Remarks::Tell);

    /// Throws UsageError if these records cannot be kept. Called after prepare().
    void requireRecords(const QList<PlannedRecord>& records) const;

    /// Prints what will be done and, after prepare(), runs the steps up to the first that fails. May be
    /// called again for the next board. Yields.
    [[nodiscard]] Ending run();

    /// Waits, yielding, for the power-on of the next board; `old`: see BoardWatch. Returns false if an
    /// interrupt has ended the wait.
    [[nodiscard]] bool awaitBoard(bool old);

    /// Returns the report's facts about the board of the last run(), except its end.
    [[nodiscard]] QJsonObject record();

    [[nodiscard]] bool isInterrupted() const { return m_interruptedAt.has_value(); }

    enum class Interrupt {
        Asking, ///< the user is there and may be asked
        Silent, ///< without a question
        End,    ///< by the system, such as SIGTERM: without a question, and never for the power switch
    };

    /// Ends the run. A second call by the user, not before a second later, also ends a power switch that the
    /// end waits for.
    void interrupt(Interrupt how);

  private:
    void forgetBoard();
    void startRunTimer();
    [[nodiscard]] bool readImages();
    void announce();
    [[nodiscard]] const QJsonArray& imageFacts();
    [[nodiscard]] QStringList inputs() const;
    void beginRecords();
    void endTrace();
    [[nodiscard]] ExitStatus dryRun();
    [[nodiscard]] ExitStatus bringPort();
    [[nodiscard]] ExitStatus awaitPort();
    [[nodiscard]] ExitStatus runSteps();
    [[nodiscard]] ExitStatus runStep(std::size_t index);
    [[nodiscard]] ExitStatus letOutLastBytes();
    void explain(ExitStatus status, const StepFacts& step);
    void runOut();
    void tellRunLimit();
    [[nodiscard]] Ending ending(ExitStatus status, EventLoop::TimePoint since) const;

    CliOptions m_options;
    ProgramFacts m_facts;
    IniChoice m_ini;
    std::shared_ptr<ImageStore> m_images;
    EventLoop& m_loop;
    Output& m_output;
    YesNoQuestion m_question;
    MessageLines m_messages;
    NoFileDialog m_fileDialog;
    PowerOnNotice m_powerOnNotice;
    MachinePorts m_ports;
    TracedPorts m_tracedPorts;
    Loader m_loader;
    ProgressLines m_progress;
    SentLines m_sent;
    Plan m_plan;
    std::unique_ptr<Timer> m_runTimer;
    QString m_step;          ///< the one that runs, or ran last
    QJsonArray m_imageFacts; ///< once they were asked for
    QJsonArray m_steps;      ///< their results so far, for the report
    QString m_begun;         ///< UTC
    QJsonObject m_adapter;
    qint64 m_bytesBefore = 0;
    int m_boards = 0; ///< begun so far
    bool m_limitReached = false;
    std::optional<EventLoop::TimePoint> m_interruptedAt;
    bool m_recordsBegun = false;
    QString m_runLimitText; ///< until it has been printed
};

} // namespace zrk
