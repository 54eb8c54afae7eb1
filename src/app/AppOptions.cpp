#include "app/AppOptions.h"

#include "app/AppTitle.h"
#include "loader/ThisProgram.h"
#include "platform/RuntimeFailure.h"

#include <QCommandLineParser>
#include <QDir>
#include <QFileInfo>

namespace zrk {
namespace {

constexpr int kUsageError = 2;

struct Parser {
    QCommandLineParser parser;
    QCommandLineOption port{QStringLiteral("port"),
                            QStringLiteral("Use DEVICE, any serial device or COM name, as COM1."),
                            QStringLiteral("DEVICE")};
    QCommandLineOption com{QStringLiteral("com"),
                           QStringLiteral("Use DEVICE as COM<n>, n from 1 to 8; may be given several times."),
                           QStringLiteral("n=DEVICE")};
    QCommandLineOption ini{QStringLiteral("ini"),
                           QStringLiteral("Preset the images from FILE; relative image paths in it start at "
                                          "its folder. Default: the program's name with .INI, beside it."),
                           QStringLiteral("FILE")};
    QCommandLineOption bringUp{
        QStringLiteral("bring-up"),
        QStringLiteral("Load the binaries and start the secondary executable at once.")};
    QCommandLineOption help{{QStringLiteral("h"), QStringLiteral("help")},
                            QStringLiteral("Display this help.")};
    QCommandLineOption version = parser.addVersionOption();

    Parser() {
        parser.setApplicationDescription(QStringLiteral("Loads boot and operating system images into a "
                                                        "ZRK6924 board over a serial line."));
        parser.addOptions({help, port, com, ini, bringUp});
    }
};

AppCommandLine usageError(const QString& what) {
    return {{}, what + QStringLiteral("\nSee --help for the options.\n"), kUsageError};
}

/// A shell variable that is not set must not silently mean the default.
QString givenValue(const Parser& given, const QCommandLineOption& option) {
    QString value = given.parser.value(option);
    if (value.isEmpty())
        throw RuntimeFailure(
            FailureKind::InvalidArgument,
            QStringLiteral("--%1 needs a value, but it is empty.").arg(option.names().first()));
    return value;
}

AppOptions optionsOf(const Parser& given) {
    AppOptions options;
    for (const QString& text : given.parser.values(given.com)) {
        const auto [number, device] = PortNames::parseOverride(text);
        options.ports.insert_or_assign(number, device);
    }
    if (given.parser.isSet(given.port))
        options.ports.insert_or_assign(1,
                                       PortNames(options.ports).optionDevice(givenValue(given, given.port)));
    if (given.parser.isSet(given.ini))
        options.iniPath = QFileInfo(givenValue(given, given.ini)).absoluteFilePath();
    options.bringUp = given.parser.isSet(given.bringUp);
    return options;
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
        return {optionsOf(given), QString(), 0};
    } catch (const RuntimeFailure& failure) {
        return usageError(failure.description());
    }
}

} // namespace zrk
