#include "cli/BoardRuns.h"
#include "cli/UsageError.h"
#include "cli/VisibleText.h"
#include "loader/ThisProgram.h"
#include "machine/StandardStreams.h"
#include "platform/RuntimeFailure.h"

#include <QCoreApplication>
#include <QJsonObject>
#include <QRegularExpression>

#include <cstdio>
#include <exception>

namespace {

using zrk::ExitStatus;

/// A rack that keeps the console's text as its record must know when that is incomplete.
int unlessOutputWasLost(int status) {
    if (std::fflush(stdout) == 0 && std::ferror(stdout) == 0)
        return status;
    std::fputs("Standard output could not be written; its text is incomplete.\n", stderr);
    return status == 0 ? static_cast<int>(ExitStatus::InternalFailure) : status;
}

void printJson(const QJsonObject& object) {
    std::printf("%s\n", zrk::jsonLine(object).constData());
}

int fail(ExitStatus status, const QString& text, bool json) {
    const bool usage = status == ExitStatus::Usage;
    const QString shown = zrk::standardErrorIsTerminal() ? zrk::withVisibleControls(text) : text;
    std::fprintf(stderr, "zrk-loader-cli: %s\n%s", shown.toLocal8Bit().constData(),
                 usage ? "Try 'zrk-loader-cli --help'.\n" : "");
    if (json)
        printJson({{QStringLiteral("event"), QStringLiteral("result")},
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

int runProgram() {
    // The window and the command line share the configuration file.
    zrk::ProgramFacts facts = zrk::programFacts();
    facts.name = QStringLiteral("zrk-loader");
    const QStringList arguments = QCoreApplication::arguments();
    const bool json = asksForJson(arguments);
    try {
        if (json)
            printJson({{QStringLiteral("event"), QStringLiteral("begin")},
                       {QStringLiteral("schema"), 1},
                       {QStringLiteral("version"), zrk::versionText()}});
        const auto options = zrk::parseCommandLine(arguments, zrk::versionText());
        if (!options)
            return 0;
        zrk::Printer printer(options->style);
        return zrk::runBoards(*options, facts, printer);
    } catch (const zrk::UsageError& error) {
        return fail(ExitStatus::Usage, QString::fromUtf8(error.what()), json);
    } catch (const zrk::RuntimeFailure& failure) {
        return fail(ExitStatus::InternalFailure, failure.description(), json);
    } catch (const std::exception& error) {
        return fail(ExitStatus::InternalFailure,
                    QStringLiteral("internal failure: ") + QString::fromLocal8Bit(error.what()), json);
    }
}

} // namespace

int main(int argc, char** argv) {
    zrk::ignoreBrokenPipes();
    const zrk::StandardStreams streams;
    const QCoreApplication app(argc, argv);
    return unlessOutputWasLost(runProgram());
}
