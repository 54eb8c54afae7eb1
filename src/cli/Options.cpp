#include "cli/Options.h"

#include "cli/Help.h"
#include "cli/UsageError.h"
#include "platform/RuntimeFailure.h"

#include <QCommandLineParser>
#include <QFileInfo>
#include <QSet>

#include <algorithm>
#include <cmath>
#include <string_view>

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

/// Returns what an option is for, if none of the steps uses it; "" if one does.
QString missingUseOf(const OptionFacts& option, const StepList& steps) {
    const auto slot = std::find_if(kSlots.begin(), kSlots.end(), [&option](const SlotFacts& facts) {
        return std::string_view(facts.option) == option.name;
    });
    const bool isImage = slot != kSlots.end();
    const bool isForPort = std::string_view(option.usedBy) == kPortSteps;
    const QStringList names = text(option.usedBy).split(QLatin1Char(' '), Qt::SkipEmptyParts);
    if (!isImage && names.isEmpty())
        return {};
    const auto uses = [&](const StepFacts& step) {
        if (isImage)
            return concerns(step, static_cast<int>(slot - kSlots.begin()));
        return isForPort ? step.usesPort : names.contains(text(step.name));
    };
    if (std::any_of(steps.cbegin(), steps.cend(),
                    [&uses](const StepCall& step) { return uses(*step.facts); }))
        return {};
    if (isForPort)
        return QStringLiteral("a step that uses the port");
    QStringList users;
    for (const StepFacts& step : allSteps())
        users += uses(step) ? QStringList(text(step.name)) : QStringList();
    return users.join(QStringLiteral(" or "));
}

/// Refuses an option without effect: a step was forgotten, or another option was meant.
void refuseUnused(const QCommandLineParser& parser, const StepList& steps) {
    for (const OptionFacts& option : allOptions()) {
        const QString use = parser.isSet(text(option.name)) ? missingUseOf(option, steps) : QString();
        if (!use.isEmpty())
            throw UsageError(
                QStringLiteral("--%1 has no effect: it is for %2. Add that step, or leave the option out.")
                    .arg(text(option.name), use));
    }
}

/// Refuses more than one device if only one would be used.
void refuseUnusedDevices(const QCommandLineParser& parser, const CliOptions& options) {
    const QStringList values = parser.values(QStringLiteral("com"));
    const auto usesPort = [](const StepCall& step) { return step.facts->usesPort; };
    if (std::none_of(options.steps.cbegin(), options.steps.cend(), usesPort))
        return;
    QSet<QString> numbers;
    QSet<QString> devices;
    for (const QString& value : values) {
        numbers += value.section(QLatin1Char('='), 0, 0);
        devices += value.section(QLatin1Char('='), 1);
    }
    devices.remove(QString());
    if (numbers.size() > 1 || devices.size() > 1)
        throw UsageError(
            QStringLiteral("--com is given %1 times, but the steps use one port. Give it once; for "
                           "several boards repeat --port.")
                .arg(values.size()));
    const QString device = values.value(0).section(QLatin1Char('='), 1);
    if (device.isEmpty() || !parser.isSet(QStringLiteral("port")))
        return;
    const auto& used = options.program.ports;
    if (!options.ports.contains(device) && used.find(options.program.portNumber)->second != device)
        throw UsageError(
            QStringLiteral("--com %1 has no effect: --port names the device. Give one of the two.")
                .arg(values.constFirst()));
}

void readLeftOut(const QCommandLineParser& parser, CliOptions& options) {
    for (const QString& name : parser.values(QStringLiteral("without"))) {
        QStringList known;
        std::size_t slot = kSlots.size();
        for (std::size_t i = 0; i < kSlots.size(); ++i) {
            known += text(kSlots[i].option);
            slot = known.constLast() == name ? i : slot;
        }
        if (slot == kSlots.size())
            throw UsageError(QStringLiteral("--without %1: the images are %2.")
                                 .arg(name, known.join(QStringLiteral(", "))));
        if (!options.slotValues[slot].isEmpty())
            throw UsageError(QStringLiteral("--without %1 contradicts --%1. Give one of the two.").arg(name));
        options.leftOut[slot] = true;
    }
}

QList<NamedPort> readNamedPorts(const QCommandLineParser& parser) {
    QList<NamedPort> ports;
    QSet<QString> labels;
    for (const QString& value : parser.values(QStringLiteral("port"))) {
        ports += readNamedPort(value);
        const QString label = ports.constLast().label.toLower();
        if (!label.isEmpty() && labels.contains(label))
            throw UsageError(
                QStringLiteral("--port %1: another board has that label; each board has its own.")
                    .arg(value));
        labels += label;
    }
    return ports;
}

/// Returns the device of the last --port; an empty value is rejected.
QString portDevice(const QCommandLineParser& parser, const QList<NamedPort>& ports) {
    (void)givenValue(parser, QStringLiteral("port"));
    return ports.isEmpty() ? QString() : ports.constLast().device;
}

/// Reads the ports: several ports mean several boards; the device of one may be given in one way only.
void readPorts(const QList<NamedPort>& ports, CliOptions& options) {
    const int other = options.program.ports.empty() ? 1 : options.program.ports.rbegin()->first;
    if (!ports.isEmpty() && other != 1)
        throw UsageError(QStringLiteral("--port names the device of COM1, but --com selects COM%1; give one "
                                        "of the two.")
                             .arg(other));
    if (ports.size() < 2)
        return;
    QStringList files; // one device may have several names
    for (const NamedPort& port : ports) {
        const QString device = PortNames(options.program.ports).optionDevice(port.device);
        if (options.ports.contains(device))
            throw UsageError(
                QStringLiteral("--port %1 is given twice; each board has its own.").arg(port.device));
        const QString file = QFileInfo(device).canonicalFilePath();
        if (const qsizetype same = file.isEmpty() ? -1 : files.indexOf(file); same >= 0)
            throw UsageError(QStringLiteral("--port %1 is the device of --port %2; each board has its own.")
                                 .arg(port.device, ports[same].device));
        files += file;
        options.ports += device;
    }
}

/// Returns the names of the boards; one without --port is named after its device.
void nameBoards(QList<NamedPort> ports, CliOptions& options) {
    const int number = options.program.portNumber;
    const QString device = PortNames(options.program.ports).device(number);
    if (ports.isEmpty())
        ports += {{}, device.isEmpty() ? QStringLiteral("COM%1").arg(number) : device};
    options.names = boardNames(ports);
    options.namesLines = ports.size() > 1 || !ports.constFirst().label.isEmpty();
}

/// Returns the seconds of "90", "1.5", "90s", "5m" or "2h"; nothing for any other text.
std::optional<double> secondsOf(QString value) {
    double unit = 1.0;
    for (const auto& [letter, seconds] : {std::pair{'s', 1.0}, {'m', 60.0}, {'h', 3600.0}}) {
        if (!value.endsWith(QLatin1Char(letter)))
            continue;
        unit = seconds;
        value.chop(1);
        break;
    }
    bool isNumber = false;
    const double number = value.toDouble(&isNumber);
    return isNumber ? std::optional(number * unit) : std::nullopt;
}

Limits::Limit readLimit(const QCommandLineParser& parser, const char* name) {
    if (!parser.isSet(text(name)))
        return {};
    const QString value = parser.value(text(name));
    const double seconds = secondsOf(value).value_or(0.0);
    constexpr double kLongest = 86400.0;
    constexpr double kShortest = 0.001;
    if (!(seconds >= kShortest) || seconds > kLongest)
        throw UsageError(
            QStringLiteral("--%1 %2: give the time in seconds, or as in 90s, 5m and 2h, from 0.001 to "
                           "86400 seconds.")
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
    limits.onWait = readLimit(parser, "on-wait-timeout").value_or(limits.onWait);
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
        throw UsageError(QStringLiteral("--progress %1: expected auto, always or never.").arg(progress));
    return style;
}

/// Reads a line of the port that is held while it is open. A raw port on the network has none.
std::optional<bool> readLine(const QCommandLineParser& parser, const char* name, const CliOptions& options) {
    if (!parser.isSet(text(name)))
        return {};
    const QString value = parser.value(text(name));
    if (value != QLatin1String("on") && value != QLatin1String("off"))
        throw UsageError(QStringLiteral("--%1 %2: expected on or off.").arg(text(name), value));
    const QString own = PortNames(options.program.ports).device(options.program.portNumber);
    for (const QString& device : options.ports.isEmpty() ? QStringList(own) : options.ports) {
        if (device.startsWith(QLatin1String("tcp:"), Qt::CaseInsensitive))
            throw UsageError(QStringLiteral("--%1: %2 is a raw port, on which no line can be switched. Use "
                                            "rfc2217: if the server speaks that.")
                                 .arg(text(name), device));
    }
    return value == QLatin1String("on");
}

/// Checks little of the command: only the shell knows what it means.
void requireCommand(const QCommandLineParser& parser, const QString& command) {
    const bool isSet = parser.isSet(QStringLiteral("on-wait"));
    if (isSet && command.trimmed().isEmpty())
        throw UsageError(QStringLiteral("--on-wait needs a command, but it is blank."));
    if (!isSet && parser.isSet(QStringLiteral("on-wait-timeout")))
        throw UsageError(
            QStringLiteral("--on-wait-timeout has no effect: it is for the command of --on-wait. Add "
                           "that option, or leave this one out."));
}

/// Lets `ports` stand alone, since it does nothing to a board.
void refuseMixedPorts(const StepList& steps) {
    const auto alone = std::find_if(steps.cbegin(), steps.cend(),
                                    [](const StepCall& step) { return step.facts->standsAlone; });
    if (alone != steps.cend() && steps.size() > 1)
        throw UsageError(QStringLiteral("The step %1 stands alone. Leave out the other steps.")
                             .arg(text(alone->facts->name)));
}

void refuseMixedTerminal(const CliOptions& options) {
    for (const StepCall& step : options.steps) {
        if (step.facts->ownsStreams && (options.style.json || options.ports.size() > 1))
            throw UsageError(
                QStringLiteral("The step %1 needs standard input and output for itself: leave out "
                               "--json, and give one board only.")
                    .arg(text(step.facts->name)));
    }
}

void readReport(const QCommandLineParser& parser, CliOptions& options) {
    options.reportFile = givenValue(parser, QStringLiteral("report"), QStringLiteral("a file name"));
    for (const QString& tag : parser.values(QStringLiteral("tag"))) {
        const QString key = tag.section(QLatin1Char('='), 0, 0);
        if (key.isEmpty() || !tag.contains(QLatin1Char('=')))
            throw UsageError(QStringLiteral("--tag %1: give KEY=VALUE.").arg(tag));
        if (options.tags.contains(key))
            throw UsageError(QStringLiteral("--tag %1: %2 is given twice.").arg(tag, key));
        options.tags.insert(key, tag.section(QLatin1Char('='), 1));
    }
    if (!options.tags.isEmpty() && options.reportFile.isEmpty())
        throw UsageError(QStringLiteral("--tag has no effect without --report."));
}

/// Requires a limit: a board that is pulled out in the middle would hold up its port for ever.
QString missingLimit(const StepFacts& step, const Limits& limits) {
    const std::string_view name(step.name);
    if (limits.run)
        return {};
    if (name == "flash" && !limits.flash)
        return QStringLiteral("--flash-timeout");
    if (name == "expect" && !limits.expect)
        return QStringLiteral("--expect-timeout");
    return name == "script" && !limits.script ? QStringLiteral("--script-timeout") : QString();
}

void checkRepeat(const CliOptions& options) {
    if (!options.repeat)
        return;
    const auto usesPort = [](const StepCall& step) { return step.facts->usesPort; };
    const auto first = std::find_if(options.steps.cbegin(), options.steps.cend(), usesPort);
    const std::string_view name(first == options.steps.cend() ? "" : first->facts->name);
    if (name != "load" && name != "flash")
        throw UsageError(QStringLiteral("--repeat needs load or flash as the first step on the port: each "
                                        "board begins with its power-on."));
    for (const StepCall& step : options.steps) {
        if (step.facts->ownsStreams)
            throw UsageError(
                QStringLiteral("--repeat cannot be used with the step %1.").arg(text(step.facts->name)));
        const QString option = missingLimit(*step.facts, options.limits);
        if (!option.isEmpty())
            throw UsageError(
                QStringLiteral("--repeat with the step %1 needs %2 or --timeout: without a limit a "
                               "board that is pulled out holds up its port.")
                    .arg(text(step.facts->name), option));
    }
}

CliOptions read(const QCommandLineParser& parser) {
    CliOptions options;
    options.steps = stepsOf(parser.positionalArguments());
    if (options.steps.empty())
        throw UsageError(QStringLiteral("No step given: expected %1.").arg(stepNames(QStringLiteral("or"))));
    try {
        const QList<NamedPort> ports = readNamedPorts(parser);
        options.program = readProgramOptions(parser, portDevice(parser, ports));
        readPorts(ports, options);
        nameBoards(ports, options);
        for (std::size_t i = 0; i < kSlots.size(); ++i)
            options.slotValues[i] = givenValue(parser, text(kSlots[i].option), QStringLiteral("a file name"));
        options.onWait = givenValue(parser, QStringLiteral("on-wait"), QStringLiteral("a command"));
        requireCommand(parser, options.onWait);
        options.dtr = readLine(parser, "dtr", options);
        options.rts = readLine(parser, "rts", options);
        options.unwanted = parser.values(QStringLiteral("not"));
        if (options.unwanted.contains(QString()))
            throw UsageError(QStringLiteral("--not needs a text that is not empty."));
        options.traceFile = givenValue(parser, QStringLiteral("trace"), QStringLiteral("a file name"));
        options.logFolder = givenValue(parser, QStringLiteral("log"), QStringLiteral("a folder"));
        readReport(parser, options);
    } catch (const RuntimeFailure& failure) {
        throw UsageError(failure.description());
    }
    readLeftOut(parser, options);
    options.limits = readLimits(parser);
    options.style = readStyle(parser);
    options.erase = parser.isSet(QStringLiteral("erase"));
    options.dryRun = parser.isSet(QStringLiteral("dry-run"));
    options.repeat = parser.isSet(QStringLiteral("repeat"));
    checkRepeat(options);
    refuseMixedTerminal(options);
    refuseMixedPorts(options.steps);
    refuseUnused(parser, options.steps);
    refuseUnusedDevices(parser, options);
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
        const bool isAll = parser.positionalArguments().contains(QStringLiteral("all"));
        print(helpText(isAll ? HelpPage::All : HelpPage::First).toLocal8Bit());
        return std::nullopt;
    }
    if (parser.isSet(QStringLiteral("version"))) {
        print("zrk-loader-cli " + version.toLocal8Bit() + '\n');
        return std::nullopt;
    }
    return read(parser);
}

} // namespace zrk
