#include "cli/BoardRuns.h"
#include "cli/Interrupts.h"
#include "cli/OutputStreams.h"
#include "cli/TimeText.h"
#include "cli/UsageError.h"
#include "cli/VisibleText.h"
#include "loader/ThisProgram.h"
#include "machine/Descriptors.h"
#include "machine/StandardStreams.h"
#include "platform/RuntimeFailure.h"

#include <QCoreApplication>
#include <QJsonObject>
#include <QRegularExpression>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <exception>
#include <optional>
#include <system_error>

namespace {

using zrk::ExitStatus;
using zrk::Interrupts;
using zrk::OutputStreams;
using Weight = OutputStreams::Weight;

using Clock = std::chrono::steady_clock;

constexpr std::chrono::seconds kLastTextLimit{2};

/// Waits for the readers, as long as they need, but not after a cancel or the limit of the run. A rack that
/// keeps the console's text as its record must know when that is incomplete.
ExitStatus drained(ExitStatus status, OutputStreams& streams, Interrupts& interrupts,
                   std::optional<Clock::time_point> runLimit) {
    std::atomic<bool> isInterrupted = false;
    const Interrupts::Direct heard(interrupts, [&](const Interrupts::Request& /*request*/) {
        isInterrupted = true;
        streams.giveUp();
    });
    const Clock::time_point soon = Clock::now() + kLastTextLimit;
    const auto until = status == ExitStatus::Cancelled ? soon : runLimit;
    const auto limit = until ? std::optional(std::max(*until, soon)) : std::nullopt;
    const auto left = [&] { return isInterrupted ? std::optional(Clock::now()) : limit; };
    const bool isOutput = streams.drainOutput(left());
    const bool isError = streams.drainError(left());
    const bool isIncomplete = !isOutput || streams.isOutputIncomplete();
    if (isIncomplete) {
        const QByteArray why = streams.outputFailure();
        streams.err("Standard output could not be written" + (why.isEmpty() ? why : ": " + why) +
                        "; its text is incomplete.\n",
                    Weight::Result);
        (void)streams.drainError(Clock::now() + kLastTextLimit);
    }
    if (status != ExitStatus::Done || (!isIncomplete && isError))
        return status;
    if (isInterrupted)
        return ExitStatus::Cancelled;
    return isOutput && isError ? ExitStatus::InternalFailure : ExitStatus::NoAnswer;
}

void printJson(OutputStreams& streams, const QJsonObject& object) {
    streams.out(zrk::jsonLine(object) + '\n', Weight::Result);
}

ExitStatus fail(ExitStatus status, const QString& text, bool json, OutputStreams& streams) {
    const bool usage = status == ExitStatus::Usage;
    const QString shown = zrk::standardErrorIsTerminal() ? zrk::withVisibleControls(text) : text;
    streams.err("zrk-loader-cli: " + shown.toLocal8Bit() + '\n' +
                    (usage ? "Try 'zrk-loader-cli --help'.\n" : ""),
                Weight::Result);
    if (json)
        printJson(streams,
                  {{QStringLiteral("event"), QStringLiteral("result")},
                   {QStringLiteral("time"), zrk::utcText()},
                   {QStringLiteral("status"), static_cast<int>(status)},
                   {QStringLiteral("reason"), usage ? QStringLiteral("usage") : QStringLiteral("internal")},
                   {QStringLiteral("text"), text}});
    return status;
}

/// Returns whether JSON is requested; known before the arguments are read, since faults in them are reported
/// in the same way. Letters may share a dash.
bool asksForJson(const QStringList& arguments) {
    static const QRegularExpression kJson(QStringLiteral("^(--json|-[enqv]*j[enqvj]*)$"));
    static const QRegularExpression kText(QStringLiteral("^(--help|--version|-[a-z]*[hV])$"));
    const QStringList options = arguments.mid(0, arguments.indexOf(QStringLiteral("--")));
    return options.indexOf(kJson) >= 0 && options.indexOf(kText) < 0;
}

ExitStatus runProgram(const QStringList& arguments, bool json, OutputStreams& streams, Interrupts& interrupts,
                      std::optional<Clock::time_point>& limit) {
    // The window and the command line share the configuration file.
    zrk::ProgramFacts facts = zrk::programFacts();
    facts.name = QStringLiteral("zrk-loader");
    try {
        if (json)
            printJson(streams, {{QStringLiteral("event"), QStringLiteral("begin")},
                                {QStringLiteral("time"), zrk::utcText()},
                                {QStringLiteral("schema"), 2},
                                {QStringLiteral("version"), zrk::versionText()}});
        auto options = zrk::parseCommandLine(arguments, zrk::versionText(),
                                             [&](const QByteArray& text) { streams.out(text); });
        if (!options)
            return ExitStatus::Done;
        if (options->limits.run && !options->repeat) { // else each board has its own
            options->runEnd = limit = Clock::now() + *options->limits.run;
            interrupts.endAfter(*limit, static_cast<int>(ExitStatus::NoAnswer));
        }
        zrk::Printer printer(options->style, streams);
        return static_cast<ExitStatus>(zrk::runBoards(*options, facts, printer, interrupts));
    } catch (const zrk::UsageError& error) {
        return fail(ExitStatus::Usage, QString::fromUtf8(error.what()), json, streams);
    } catch (const zrk::RuntimeFailure& failure) {
        return fail(ExitStatus::InternalFailure, failure.description(), json, streams);
    } catch (const std::exception& error) {
        return fail(ExitStatus::InternalFailure,
                    QStringLiteral("internal failure: ") + QString::fromLocal8Bit(error.what()), json,
                    streams);
    }
}

} // namespace

int main(int argc, char** argv) {
    zrk::fillMissingStreams();
    zrk::ignoreBrokenPipes();
    const zrk::StandardStreams standardStreams;
    std::optional<Interrupts> interrupts;
    std::optional<OutputStreams> streams;
    try {
        interrupts.emplace(); // before any other thread
        const QCoreApplication app(argc, argv);
        const QStringList arguments = QCoreApplication::arguments();
        const bool json = asksForJson(arguments);
        streams.emplace(json);
        std::optional<Clock::time_point> limit;
        const ExitStatus status = runProgram(arguments, json, *streams, *interrupts, limit);
        return static_cast<int>(drained(status, *streams, *interrupts, limit));
    } catch (const std::system_error& error) { // no thread or descriptor for what every run needs
        std::fprintf(stderr, "zrk-loader-cli: %s. Nothing was sent. End other programs and try again.\n",
                     error.code().message().c_str());
        return static_cast<int>(ExitStatus::InternalFailure);
    }
}
