#include "cli/Options.h"

#include "cli/UsageError.h"
#include "platform/RuntimeFailure.h"

#include <QCommandLineParser>

#include <cmath>
#include <cstdio>

namespace zrk {
namespace {

QString description() {
    QString steps;
    for (const StepFacts& step : allSteps())
        steps += QStringLiteral("  %1 %2\n").arg(QLatin1String(step.name), -8).arg(QLatin1String(step.help));
    return QStringLiteral("Brings up and programs boards over one serial line (115200 8N1).\n"
                          "\n"
                          "Steps, carried out in the order given, over one port:\n"
                          "%1"
                          "\n"
                          "The console text goes to standard output, everything else to standard error.\n"
                          "Ctrl-C cancels. Exit status: 0 all steps done; 1 internal failure, or standard\n"
                          "output could not be written; 2 usage, configuration or address error, nothing\n"
                          "was sent; 3 the port could not be opened; 4 no answer in time; 5 wrong answer\n"
                          "or refusal; 6 the port was lost; 130 cancelled.")
        .arg(steps);
}

void addOptions(QCommandLineParser& parser) {
    addProgramOptions(parser);
    const auto add = [&parser](const QString& name, const QString& text, const QString& value = {}) {
        parser.addOption(QCommandLineOption(name, text, value));
    };
    for (const SlotFacts& slot : kSlots)
        add(QString::fromLatin1(slot.option), QString::fromLatin1(slot.optionHelp),
            QStringLiteral("FILE[,ADDRESS]"));
    add(QStringLiteral("erase"), QStringLiteral("Erase the whole flash before it is programmed."));
    add(QStringLiteral("wait"), QStringLiteral("Give up if the board does not announce itself in time."),
        QStringLiteral("SECONDS"));
}

/// The port of a run is one, so a device for it may be given in one way only.
void refuseTwoPorts(const QCommandLineParser& parser, const ProgramOptions& options) {
    const int other = options.ports.empty() ? 1 : options.ports.rbegin()->first;
    if (parser.isSet(QStringLiteral("port")) && other != 1)
        throw UsageError(QStringLiteral("--port names the device of COM1, but --com selects COM%1; give one "
                                        "of the two.")
                             .arg(other));
}

void readWaitLimit(const QCommandLineParser& parser, CliOptions& options) {
    if (!parser.isSet(QStringLiteral("wait")))
        return;
    bool isNumber = false;
    const QString text = parser.value(QStringLiteral("wait"));
    const double seconds = text.toDouble(&isNumber);
    constexpr double kLongest = 86400.0;
    if (!isNumber || !(seconds > 0.0) || seconds > kLongest)
        throw UsageError(
            QStringLiteral("--wait %1: give the seconds as a number above 0, up to 86400.").arg(text));
    options.waitLimit = std::chrono::milliseconds(std::llround(seconds * 1000.0));
}

} // namespace

QString slotOption(int slot) {
    return QStringLiteral("--") + QString::fromLatin1(factsOf(slot).option);
}

std::optional<CliOptions> parseCommandLine(const QStringList& arguments, const QString& version) {
    QCommandLineParser parser;
    parser.setApplicationDescription(description());
    const QCommandLineOption help({QStringLiteral("h"), QStringLiteral("help")},
                                  QStringLiteral("Display this help."));
    parser.addOption(help);
    const QCommandLineOption versionOption = parser.addVersionOption();
    parser.addPositionalArgument(QStringLiteral("STEP..."), stepNames(QStringLiteral("or")),
                                 QStringLiteral("STEP..."));
    addOptions(parser);
    if (!parser.parse(arguments))
        throw UsageError(parser.errorText());
    if (parser.isSet(help)) {
        std::fputs(parser.helpText().toLocal8Bit().constData(), stdout);
        return std::nullopt;
    }
    if (parser.isSet(versionOption)) {
        std::printf("zrk-loader-cli %s\n", version.toLocal8Bit().constData());
        return std::nullopt;
    }

    CliOptions options;
    const QStringList steps = parser.positionalArguments();
    for (const QString& name : steps)
        options.steps.push_back(&stepNamed(name));
    if (options.steps.empty())
        throw UsageError(QStringLiteral("No step given: say %1.").arg(stepNames(QStringLiteral("or"))));
    try {
        options.program = readProgramOptions(parser);
        for (std::size_t i = 0; i < kSlots.size(); ++i)
            options.slotValues[i] =
                givenValue(parser, QString::fromLatin1(kSlots[i].option), QStringLiteral("a file name"));
    } catch (const RuntimeFailure& failure) {
        throw UsageError(failure.description());
    }
    refuseTwoPorts(parser, options.program);
    readWaitLimit(parser, options);
    options.erase = parser.isSet(QStringLiteral("erase"));
    return options;
}

} // namespace zrk
