#include "cli/Options.h"

#include "cli/Help.h"
#include "cli/UsageError.h"
#include "platform/RuntimeFailure.h"

#include <QCommandLineParser>
#include <QProcess>
#include <QStandardPaths>

#include <cmath>

namespace zrk {
namespace {

QString text(const char* latin) {
    return QString::fromLatin1(latin);
}

void addOptions(QCommandLineParser& parser) {
    for (const OptionFacts& option : allOptions()) {
        QStringList names{text(option.name)};
        if (option.letter != 0)
            names += QString(QLatin1Char(option.letter));
        parser.addOption(QCommandLineOption(names, text(option.help), text(option.value)));
    }
}

/// Several ports are several boards; the device of one may be given in one way only.
void readPorts(const QCommandLineParser& parser, CliOptions& options) {
    const QStringList ports = parser.values(QStringLiteral("port"));
    const int other = options.program.ports.empty() ? 1 : options.program.ports.rbegin()->first;
    if (!ports.isEmpty() && other != 1)
        throw UsageError(QStringLiteral("--port names the device of COM1, but --com selects COM%1; give one "
                                        "of the two.")
                             .arg(other));
    if (ports.size() < 2)
        return;
    for (const QString& port : ports) {
        const QString device = PortNames(options.program.ports).optionDevice(port);
        if (options.ports.contains(device))
            throw UsageError(QStringLiteral("--port %1 is given twice; each board has its own.").arg(port));
        options.ports += device;
    }
}

Limits::Limit readLimit(const QCommandLineParser& parser, const char* name) {
    if (!parser.isSet(text(name)))
        return {};
    bool isNumber = false;
    const QString value = parser.value(text(name));
    const double seconds = value.toDouble(&isNumber);
    constexpr double kLongest = 86400.0;
    constexpr double kShortest = 0.001;
    if (!isNumber || !(seconds >= kShortest) || seconds > kLongest)
        throw UsageError(QStringLiteral("--%1 %2: give the seconds as a number above 0, from 0.001 to 86400.")
                             .arg(text(name), value));
    return std::chrono::milliseconds(std::llround(seconds * 1000.0));
}

Limits readLimits(const QCommandLineParser& parser) {
    Limits limits;
    limits.run = readLimit(parser, "timeout");
    limits.wait = readLimit(parser, "wait");
    limits.waitPort = readLimit(parser, "wait-port");
    limits.flash = readLimit(parser, "flash-timeout");
    limits.expect = readLimit(parser, "expect-timeout");
    limits.script = readLimit(parser, "script-timeout");
    limits.start = readLimit(parser, "start-timeout").value_or(limits.start);
    return limits;
}

PrintStyle readStyle(const QCommandLineParser& parser) {
    PrintStyle style;
    style.json = parser.isSet(QStringLiteral("json"));
    style.quiet = parser.isSet(QStringLiteral("quiet"));
    style.verbose = parser.isSet(QStringLiteral("verbose"));
    const QString progress = parser.value(QStringLiteral("progress"));
    if (progress == QLatin1String("always"))
        style.progress = PrintStyle::Progress::Always;
    else if (progress == QLatin1String("never"))
        style.progress = PrintStyle::Progress::Never;
    else if (parser.isSet(QStringLiteral("progress")) && progress != QLatin1String("auto"))
        throw UsageError(QStringLiteral("--progress %1: say auto, always or never.").arg(progress));
    return style;
}

/// A power switch that is not there would leave the run waiting for a board that nobody switches on.
void requireProgram(const QString& command, bool isSet) {
    const QString program = QProcess::splitCommand(command).value(0);
    if (!isSet || !QStandardPaths::findExecutable(program).isEmpty())
        return;
    throw UsageError(program.isEmpty()
                         ? QStringLiteral("--on-wait needs a command, but it is blank.")
                         : QStringLiteral("--on-wait %1: there is no such program, or it may not "
                                          "be started.")
                               .arg(program));
}

void refuseMixedTerminal(const CliOptions& options) {
    for (const StepCall& step : options.steps) {
        if (step.facts->ownsStreams && (options.style.json || options.ports.size() > 1))
            throw UsageError(
                QStringLiteral("The step %1 takes standard input and output for itself: it goes neither "
                               "with --json nor with several boards.")
                    .arg(text(step.facts->name)));
    }
}

CliOptions read(const QCommandLineParser& parser) {
    CliOptions options;
    options.steps = stepsOf(parser.positionalArguments());
    if (options.steps.empty())
        throw UsageError(QStringLiteral("No step given: say %1.").arg(stepNames(QStringLiteral("or"))));
    try {
        options.program = readProgramOptions(parser);
        readPorts(parser, options);
        for (std::size_t i = 0; i < kSlots.size(); ++i)
            options.slotValues[i] = givenValue(parser, text(kSlots[i].option), QStringLiteral("a file name"));
        options.onWait = givenValue(parser, QStringLiteral("on-wait"), QStringLiteral("a command"));
        requireProgram(options.onWait, parser.isSet(QStringLiteral("on-wait")));
        options.traceFile = givenValue(parser, QStringLiteral("trace"), QStringLiteral("a file name"));
        options.logFolder = givenValue(parser, QStringLiteral("log"), QStringLiteral("a folder"));
    } catch (const RuntimeFailure& failure) {
        throw UsageError(failure.description());
    }
    options.limits = readLimits(parser);
    options.style = readStyle(parser);
    options.erase = parser.isSet(QStringLiteral("erase"));
    options.dryRun = parser.isSet(QStringLiteral("dry-run"));
    refuseMixedTerminal(options);
    return options;
}

} // namespace

QString slotOption(int slot) {
    return QStringLiteral("--") + text(factsOf(slot).option);
}

std::optional<CliOptions> parseCommandLine(const QStringList& arguments, const QString& version,
                                           const std::function<void(const QByteArray&)>& print) {
    QCommandLineParser parser;
    addOptions(parser);
    if (!parser.parse(arguments))
        throw UsageError(parser.errorText());
    if (parser.isSet(QStringLiteral("help"))) {
        print(helpText().toLocal8Bit());
        return std::nullopt;
    }
    if (parser.isSet(QStringLiteral("version"))) {
        print("zrk-loader-cli " + version.toLocal8Bit() + '\n');
        return std::nullopt;
    }
    return read(parser);
}

} // namespace zrk
