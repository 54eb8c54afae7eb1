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

/// One board's run of the command line: a loader without a window, and the steps that it is put through, on
/// one thread.
class Session {
  public:
    /// Images are read through the store, which other boards may use as well.
    Session(const CliOptions& options, const ProgramFacts& facts, EventLoop& loop, Output& output,
            std::shared_ptr<ImageStore> images);

    enum class Remarks { Tell, AreKnown };

    /// Presets the slots, says what is strange about the configuration, reads the images whole, and checks
    /// what can be checked before anything is sent. Throws UsageError for a configuration that cannot work.
    void prepare(Remarks remarks = Remarks::Tell);

    /// After prepare(): throws UsageError if these records cannot be kept.
    void requireRecords(const QList<PlannedRecord>& records) const;

    /// Says what will be done and, after prepare(), carries out the steps up to the first that fails. May be
    /// called again for the next board. Yields.
    [[nodiscard]] Ending run();

    /// Waits, yielding, for the power-on of the next board; `old`: see BoardWatch. Returns false if an
    /// interrupt has ended the wait.
    [[nodiscard]] bool awaitBoard(bool old);

    /// What the report says of the board that run() was for, except its end.
    [[nodiscard]] QJsonObject record();

    [[nodiscard]] bool isInterrupted() const { return m_interruptedAt.has_value(); }

    /// The user wants an end; with `ended` nobody is there any more to be asked about it. A second call, not
    /// before a second later, also ends a power switch that the end waits for.
    void interrupt(bool ended);

  private:
    void forgetBoard();
    void startRunTimer();
    void presetSlots();
    void presetSlot(int slot, const QString& value);
    [[nodiscard]] bool readImages();
    void leaveOutImages();
    void announce();
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
    QString m_step;     ///< the one that runs, or ran last
    QJsonArray m_steps; ///< what has come of them so far, for the report
    QString m_begun;    ///< UTC
    QJsonObject m_adapter;
    qint64 m_bytesBefore = 0;
    int m_boards = 0; ///< begun so far
    bool m_limitReached = false;
    std::optional<EventLoop::TimePoint> m_interruptedAt;
    bool m_recordsBegun = false;
    QString m_runLimitText; ///< until it has been told
};

} // namespace zrk
