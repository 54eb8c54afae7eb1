#include "cli/Options.h"
#include "cli/Session.h"
#include "cli/UsageError.h"
#include "loader/ThisProgram.h"
#include "machine/QtEventLoop.h"
#include "machine/StandardStreams.h"

#include <QCoreApplication>

#include <cstdio>
#include <exception>

namespace {

/// A rack that keeps the console's text as its record must know when that is incomplete.
zrk::ExitStatus unlessOutputWasLost(zrk::ExitStatus status, zrk::Output& output) {
    if (!output.wasLost())
        return status;
    output.tell(QStringLiteral("Standard output could not be written; its text is incomplete."));
    return status == zrk::ExitStatus::Done ? zrk::ExitStatus::InternalFailure : status;
}

int runProgram() {
    // The window and the command line share the configuration file.
    zrk::ProgramFacts facts = zrk::programFacts();
    facts.name = QStringLiteral("zrk-loader");
    try {
        const auto options = zrk::parseCommandLine(QCoreApplication::arguments(), zrk::versionText());
        if (!options)
            return 0;
        zrk::QtEventLoop loop;
        zrk::Output output;
        zrk::Session session(*options, facts, loop, output);
        return static_cast<int>(unlessOutputWasLost(session.run(), output));
    } catch (const zrk::UsageError& error) {
        std::fprintf(stderr, "zrk-loader-cli: %s\nTry 'zrk-loader-cli --help'.\n", error.what());
        return static_cast<int>(zrk::ExitStatus::Usage);
    } catch (const zrk::RuntimeFailure& failure) {
        std::fprintf(stderr, "zrk-loader-cli: %s\n", failure.what());
        return static_cast<int>(zrk::ExitStatus::InternalFailure);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "zrk-loader-cli: internal failure: %s\n", error.what());
        return static_cast<int>(zrk::ExitStatus::InternalFailure);
    }
}

} // namespace

int main(int argc, char** argv) {
    zrk::ignoreBrokenPipes();
    const QCoreApplication app(argc, argv);
    return runProgram();
}
