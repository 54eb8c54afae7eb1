#include "cli/BoardRuns.h"
#include "cli/OutputStreams.h"
#include "cli/UsageError.h"
#include "cli/VisibleText.h"
#include "loader/ThisProgram.h"
#include "machine/Descriptors.h"
#include "machine/InterruptSignal.h"
#include "machine/StandardStreams.h"
#include "platform/RuntimeFailure.h"

#include <QCoreApplication>
#include <QJsonObject>
#include <QRegularExpression>

#include <chrono>
#include <cstdio>
#include <exception>

namespace {

using zrk::ExitStatus;
using zrk::OutputStreams;
using Weight = OutputStreams::Weight;

constexpr std::chrono::seconds kLastMessageLimit{1};

/// A rack that keeps the console's text as its record must know when that is incomplete.
int unlessOutputWasLost(int status, OutputStreams& streams) {
    const bool isHelpOut = std::fflush(stdout) == 0 && std::ferror(stdout) == 0;
    const bool isAllOut = streams.drainOutput({}) && isHelpOut && !streams.isOutputIncomplete();
    (void)streams.drainError({});
    if (isAllOut)
        return status;
    streams.err("Standard output could not be written; its text is incomplete.\n", Weight::Result);
    (void)streams.drainError(std::chrono::steady_clock::now() + kLastMessageLimit);
    return status == 0 ? static_cast<int>(ExitStatus::InternalFailure) : status;
}

void printJson(OutputStreams& streams, const QJsonObject& object) {
    streams.out(zrk::jsonLine(object) + '\n', Weight::Result);
}

int fail(ExitStatus status, const QString& text, bool json, OutputStreams& streams) {
    const bool usage = status == ExitStatus::Usage;
    const QString shown = zrk::standardErrorIsTerminal() ? zrk::withVisibleControls(text) : text;
    streams.err("zrk-loader-cli: " + shown.toLocal8Bit() + '\n' +
                    (usage ? "Try 'zrk-loader-cli --help'.\n" : ""),
                Weight::Result);
    if (json)
        printJson(streams,
                  {{QStringLiteral("event"), QStringLiteral("result")},
                   {QStringLiteral("status"), static_cast<int>(status)},
                   {QStringLiteral("reason"), usage ? QStringLiteral("usage") : QStringLiteral("internal")},
                   {QStringLiteral("text"), text}});
    return static_cast<int>(status);
}

/// Known before the arguments are read, since what is wrong with them is told in the same way. Letters may
/// share a dash.
bool asksForJson(const QStringList& arguments) {
    static const QRegularExpression kJson(QStringLiteral("^(--json|-[enqv]*j[enqvj]*)$"));
    static const QRegularExpression kText(QStringLiteral("^(--help|--version|-[a-z]*[hV])$"));
    const QStringList options = arguments.mid(0, arguments.indexOf(QStringLiteral("--")));
    return options.indexOf(kJson) >= 0 && options.indexOf(kText) < 0;
}

int runProgram(const QStringList& arguments, bool json, OutputStreams& streams) {
    // The window and the command line share the configuration file.
    zrk::ProgramFacts facts = zrk::programFacts();
    facts.name = QStringLiteral("zrk-loader");
    try {
        if (json)
            printJson(streams, {{QStringLiteral("event"), QStringLiteral("begin")},
                                {QStringLiteral("schema"), 1},
                                {QStringLiteral("version"), zrk::versionText()}});
        const auto options = zrk::parseCommandLine(arguments, zrk::versionText());
        if (!options)
            return 0;
        zrk::Printer printer(options->style, streams);
        return zrk::runBoards(*options, facts, printer);
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
    zrk::InterruptSignal::hold();
    const zrk::StandardStreams standardStreams;
    const QCoreApplication app(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    const bool json = asksForJson(arguments);
    OutputStreams streams(json);
    return unlessOutputWasLost(runProgram(arguments, json, streams), streams);
}
