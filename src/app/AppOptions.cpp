#include "app/AppOptions.h"

#include "app/Identity.h"
#include "loader/ThisProgram.h"
#include "platform/RuntimeFailure.h"

#include <QCommandLineParser>

namespace zrk {
namespace {

constexpr int kUsageError = 2;

struct Parser {
    QCommandLineParser parser;
    QCommandLineOption bringUp{
        QStringLiteral("bring-up"),
        QStringLiteral("Load the binaries and start the secondary executable at once.")};
    QCommandLineOption help{{QStringLiteral("h"), QStringLiteral("help")},
                            QStringLiteral("Display this help.")};
    QCommandLineOption version = parser.addVersionOption();

    Parser() {
        parser.setApplicationDescription(QStringLiteral("Loads boot and operating system images into a "
                                                        "ZRK6924 board over a serial line."));
        parser.addOption(help);
        addProgramOptions(parser);
        parser.addOption(bringUp);
    }
};

AppCommandLine usageError(const QString& what) {
    return {{}, what + QStringLiteral("\nSee --help for the options.\n"), kUsageError};
}

} // namespace

AppCommandLine readCommandLine(const QStringList& arguments) {
    Parser given;
    if (!given.parser.parse(arguments))
        return usageError(given.parser.errorText());
    if (given.parser.isSet(given.help))
        return {{}, given.parser.helpText(), 0};
    if (given.parser.isSet(given.version))
        return {{}, QStringLiteral("%1 %2\n").arg(applicationTitle(), versionText()), 0};
    if (!given.parser.positionalArguments().isEmpty())
        return usageError(
            QStringLiteral("Unexpected argument: %1").arg(given.parser.positionalArguments().first()));
    try {
        return {AppOptions{readProgramOptions(given.parser), given.parser.isSet(given.bringUp)}, QString(),
                0};
    } catch (const RuntimeFailure& failure) {
        return usageError(failure.description());
    }
}

} // namespace zrk
