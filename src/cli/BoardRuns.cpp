#include "cli/BoardRuns.h"

#include "boot/ImageStore.h"
#include "cli/Interrupts.h"
#include "cli/PortRun.h"
#include "cli/RecordCheck.h"
#include "cli/Report.h"
#include "cli/Session.h"
#include "cli/UsageError.h"
#include "machine/OpenFileLimit.h"
#include "machine/QtEventLoop.h"

#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>

#include <algorithm>
#include <atomic>
#include <mutex>
#include <system_error>
#include <thread>

namespace zrk {
namespace {

/// Checks for all boards at once, and before any of them gets data, what would be wrong with all.
void requireWorkable(CliOptions options, const ProgramFacts& facts, Printer& printer, EventLoop& loop,
                     const std::shared_ptr<ImageStore>& images, const QList<PlannedRecord>& records) {
    options.program.ports.insert_or_assign(1, options.ports.first());
    Output output(printer, {0, {}, {}, {}});
    Session session(options, facts, loop, output, images);
    session.prepare();
    session.requireRecords(records);
}

/// Makes a file's name from a port's. Windows would open the port itself under its name, whatever the suffix.
QString transcriptOf(const QString& name) {
#ifdef Q_OS_WIN
    static const QRegularExpression kDevice(QStringLiteral("^(COM[0-9]+|LPT[0-9]+|CON|PRN|AUX|NUL)$"),
                                            QRegularExpression::CaseInsensitiveOption);
    if (kDevice.match(name).hasMatch())
        return QStringLiteral("port-%1.log").arg(name);
#endif
    return name + QStringLiteral(".log");
}

/// Returns a file for each board: "rack.trace" becomes "rack-ttyUSB0.trace".
QString traceOf(const QString& file, const QString& name) {
    if (file.isEmpty())
        return file;
    const QFileInfo info(file);
    const QString suffix = info.suffix().isEmpty() ? QString() : QLatin1Char('.') + info.suffix();
    return info.dir().filePath(info.completeBaseName() + QLatin1Char('-') + name + suffix);
}

/// Gives a board files of its own. A dry run keeps no records, and prints whether a run could.
void nameRecords(CliOptions& options, const QString& name) {
    if (!options.logFolder.isEmpty())
        options.transcriptFile = QDir(options.logFolder).filePath(transcriptOf(name));
    if (!options.ports.isEmpty())
        options.traceFile = traceOf(options.traceFile, name);
}

void keepTranscript(Output& output, const CliOptions& options) {
    if (!options.transcriptFile.isEmpty() && !options.dryRun)
        output.keepTranscript(options.transcriptFile);
}

/// Checks the records of all boards before any board gets data.
QList<PlannedRecord> allRecords(const CliOptions& options, const QStringList& names) {
    QList<PlannedRecord> records;
    for (const QString& name : names) {
        CliOptions own = options;
        nameRecords(own, name);
        records += recordsOf(own);
    }
    return options.dryRun ? QList<PlannedRecord>() : records;
}

/// The run of one board of several.
class BoardRun {
  public:
    BoardRun(const CliOptions& options, const ProgramFacts& facts, Printer& printer, std::size_t row,
             const QString& name, std::shared_ptr<ImageStore> images, const Report& report)
        : m_options(options), m_facts(facts), m_images(std::move(images)),
          m_output(printer, {row, name, options.ports[static_cast<qsizetype>(row)], name}),
          m_portRun(m_options, m_output, report) {
        m_options.program.ports.insert_or_assign(1, m_output.place().port);
        m_options.program.portNumber = 1;
        nameRecords(m_options, name);
        keepTranscript(m_output, m_options);
    }

    /// Runs on a thread of its own and calls `ended` from there at the end. Without a thread the board has
    /// failed, and `ended` is called at once.
    void start(const std::function<void()>& ended) {
        try {
            m_thread = std::jthread([this, ended] {
                live();
                ended();
            });
        } catch (const std::system_error& error) {
            m_output.tell(
                QStringLiteral("No thread could be started for this board: %1. Nothing was sent to it. "
                               "Give fewer boards, or end other programs.")
                    .arg(QString::fromLocal8Bit(error.code().message().c_str())));
            m_portRun.endEarly(ExitStatus::InternalFailure);
            ended();
        }
    }
    void join() {
        if (m_thread.joinable())
            m_thread.join();
    }

    /// Any thread may call it.
    void interrupt(Interrupts::Request request) {
        const std::scoped_lock lock(m_mutex);
        if (m_session != nullptr)
            m_loop->post([session = m_session, request = std::move(request)]() mutable {
                const bool isEnd = request->isEnd;
                request.reset(); // taken
                session->interrupt(isEnd ? Session::Interrupt::End : Session::Interrupt::Silent);
            });
        m_interrupted = true;
    }

    [[nodiscard]] const PortRun& portRun() const { return m_portRun; }
    [[nodiscard]] const QString& name() const { return m_output.place().name; }

  private:
    void live() {
        try {
            QtEventLoop loop;
            Session session(m_options, m_facts, loop, m_output, m_images);
            const Reachable reachable(*this, loop, session);
            if (m_interrupted) {
                m_output.tell(QStringLiteral("Cancelled before the first step."));
                return m_portRun.endEarly(ExitStatus::Cancelled);
            }
            session.prepare(Session::Remarks::AreKnown);
            m_portRun.run(session);
        } catch (const std::exception& error) {
            m_output.tell(QString::fromUtf8(error.what()));
            const bool usage = dynamic_cast<const UsageError*>(&error) != nullptr;
            m_portRun.endEarly(usage ? ExitStatus::Usage : ExitStatus::InternalFailure);
        }
    }

    /// A registration: as long as it exists, the session can be interrupted; what was on its way then is
    /// dropped with the loop.
    struct Reachable {
        Reachable(BoardRun& run, EventLoop& loop, Session& session) : m_run(run) {
            const std::scoped_lock lock(m_run.m_mutex);
            m_run.m_loop = &loop;
            m_run.m_session = &session;
        }
        ~Reachable() {
            const std::scoped_lock lock(m_run.m_mutex);
            m_run.m_loop = nullptr;
            m_run.m_session = nullptr;
        }
        Reachable(const Reachable&) = delete;
        Reachable& operator=(const Reachable&) = delete;

      private:
        BoardRun& m_run;
    };

    CliOptions m_options;
    ProgramFacts m_facts;
    std::shared_ptr<ImageStore> m_images;
    Output m_output;
    PortRun m_portRun;
    std::mutex m_mutex;
    EventLoop* m_loop = nullptr;
    Session* m_session = nullptr;
    std::atomic<bool> m_interrupted = false;
    std::jthread m_thread;
};

/// Event loops without files end the program, and with it the operations of all boards.
void requireOpenFiles(qsizetype boards) {
    // Port, loop, driver, records, and a power switch that is being started.
    constexpr std::uint64_t kOfABoard = 24;
    constexpr std::uint64_t kOfAll = 32;
    const std::uint64_t wanted = kOfAll + kOfABoard * static_cast<std::uint64_t>(boards);
    if (const auto allowed = allowOpenFiles(wanted))
        throw UsageError(
            QStringLiteral("%1 boards need up to %2 open files, and %3 are allowed. Raise the limit "
                           "(ulimit -n), or give fewer boards.")
                .arg(boards)
                .arg(wanted)
                .arg(*allowed));
}

QString rowOf(const PortRun& run, bool repeats) {
    const Ending& ending = run.ending();
    if (repeats)
        return QStringLiteral("good %1  bad %2  status %3")
            .arg(run.tally().good, 5)
            .arg(run.tally().bad, 5)
            .arg(run.status(), 3);
    return QStringLiteral("status %1  %2 s  %3 bytes  %4%5")
        .arg(ending.status, 3)
        .arg(ending.seconds, 7, 'f', 1)
        .arg(ending.bytes, 9)
        .arg(ending.reason,
             ending.status == 0 || ending.step.isEmpty() ? QString() : QStringLiteral(" in ") + ending.step);
}

/// Returns a row for each port.
void printTable(const QList<std::pair<QString, const PortRun*>>& runs, bool repeats, Printer& printer) {
    if (printer.style().json)
        return;
    qsizetype width = 0;
    for (const auto& [name, run] : runs)
        width = std::max(width, name.size());
    QStringList lines;
    for (const auto& [name, run] : runs)
        lines += name.leftJustified(width) + QStringLiteral("  ") + rowOf(*run, repeats);
    printer.err(lines.join(QLatin1Char('\n')).toLocal8Bit() + '\n', Printer::Weight::Result);
}

int runOne(CliOptions options, const ProgramFacts& facts, Printer& printer, Interrupts& interrupts) {
    QtEventLoop loop;
    const PortNames names(options.program.ports);
    const QString device = names.device(options.program.portNumber);
    const QString name = options.names.constFirst();
    Output output(printer, {0, options.namesLines ? name : QString(), device, name});
    nameRecords(options, name);
    keepTranscript(output, options);
    Session* running = nullptr;
    const Interrupts::InLoop heard(interrupts, loop, [&running](Interrupts::Request request) {
        const bool isEnd = request->isEnd;
        request.reset(); // taken, however long a question to the user takes
        if (running != nullptr)
            running->interrupt(isEnd ? Session::Interrupt::End : Session::Interrupt::Asking);
    });
    Session session(options, facts, loop, output, std::make_shared<ImageStore>());
    session.prepare();
    if (!options.dryRun)
        session.requireRecords(recordsOf(options));
    const Report report(options);
    report.begin();
    PortRun run(options, output, report);
    running = &session;
    run.run(session);
    running = nullptr;
    if (options.repeat && !options.dryRun)
        printTable({{name, &run}}, true, printer);
    return run.status();
}

int runMany(const CliOptions& options, const ProgramFacts& facts, Printer& printer, Interrupts& interrupts) {
    requireOpenFiles(options.ports.size());
    QtEventLoop loop;
    const auto images = std::make_shared<ImageStore>();
    requireWorkable(options, facts, printer, loop, images, allRecords(options, options.names));
    std::atomic<std::size_t> left = 0; // outlives the threads that count it
    std::vector<std::unique_ptr<BoardRun>> runs;
    // One answer could not be for all boards, and a question for each would stop the others' display.
    const Interrupts::InLoop heard(interrupts, loop, [&runs](const Interrupts::Request& request) {
        for (const auto& run : runs)
            run->interrupt(request);
    });
    const Report report(options);
    report.begin();
    for (qsizetype i = 0; i < options.names.size(); ++i)
        runs.push_back(std::make_unique<BoardRun>(options, facts, printer, static_cast<std::size_t>(i),
                                                  options.names[i], images, report));
    left = runs.size();
    for (const auto& run : runs)
        run->start([&] {
            --left;
            loop.wake();
        });
    while (left > 0)
        loop.wait();
    int worst = 0;
    QList<std::pair<QString, const PortRun*>> rows;
    for (const auto& run : runs) {
        run->join();
        worst = std::max(worst, run->portRun().status());
        rows.emplaceBack(run->name(), &run->portRun());
    }
    printTable(rows, options.repeat && !options.dryRun, printer);
    return worst;
}

} // namespace

int runBoards(const CliOptions& options, const ProgramFacts& facts, Printer& printer,
              Interrupts& interrupts) {
    return options.ports.isEmpty() ? runOne(options, facts, printer, interrupts)
                                   : runMany(options, facts, printer, interrupts);
}

} // namespace zrk
