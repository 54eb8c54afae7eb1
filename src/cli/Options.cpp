#include "cli/Options.h"

#include "platform/RuntimeFailure.h"

#include <QCommandLineParser>

#include <cmath>
#include <cstdio>

namespace zrk {
namespace {

constexpr const char* kDescription =
    "Brings up and programs boards over one serial line (115200 8N1).\n"
    "\n"
    "Steps, carried out in the order given, over one port:\n"
    "  load     load the primary boot and the secondary executable\n"
    "  start    start the loaded secondary executable\n"
    "  check    check the SDRAM addresses and print the address list\n"
    "  flash    program the flash image into the board's NAND flash\n"
    "\n"
    "The console text goes to standard output, everything else to standard error.\n"
    "Ctrl-C cancels. Exit status: 0 all steps done; 1 internal failure, or standard\n"
    "output could not be written; 2 usage, configuration or address error, nothing\n"
    "was sent; 3 the port could not be opened; 4 no answer in time; 5 wrong answer\n"
    "or refusal; 6 the port was lost; 130 cancelled.";

void addOptions(QCommandLineParser& parser) {
    const auto add = [&parser](const QString& name, const QString& text, const QString& value = {}) {
        parser.addOption(QCommandLineOption(name, text, value));
    };
    add(QStringLiteral("port"), QStringLiteral("Use DEVICE (a device file or a COM name) as COM1."),
        QStringLiteral("DEVICE"));
    add(QStringLiteral("com"),
        QStringLiteral("Use port COMN, 1 to 8. With =DEVICE it stands for that device; may be repeated."),
        QStringLiteral("N[=DEVICE]"));
    add(QStringLiteral("ini"),
        QStringLiteral("Preset the images from FILE; relative paths in it start at its folder. Without "
                       "this: zrk-loader.INI beside the program, if there is one."),
        QStringLiteral("FILE"));
    for (const SlotFacts& slot : kSlots)
        add(QString::fromLatin1(slot.option), QString::fromLatin1(slot.optionHelp),
            QStringLiteral("FILE[,ADDRESS]"));
    add(QStringLiteral("erase"), QStringLiteral("Erase the whole flash before it is programmed."));
    add(QStringLiteral("wait"), QStringLiteral("Give up if the board does not announce itself in time."),
        QStringLiteral("SECONDS"));
}

/// A shell variable that is not set must not silently mean the default.
void refuseEmptyValues(const QCommandLineParser& parser) {
    QStringList names{QStringLiteral("ini")};
    for (const SlotFacts& slot : kSlots)
        names.append(QString::fromLatin1(slot.option));
    for (const QString& name : names) {
        if (parser.isSet(name) && parser.value(name).isEmpty())
            throw UsageError(QStringLiteral("--%1 needs a file name, but it is empty.").arg(name));
    }
}

Step stepNamed(const QString& name) {
    if (name == QLatin1String("load"))
        return Step::Load;
    if (name == QLatin1String("start"))
        return Step::Start;
    if (name == QLatin1String("check"))
        return Step::Check;
    if (name == QLatin1String("flash"))
        return Step::Flash;
    throw UsageError(
        QStringLiteral("Unknown step \"%1\": the steps are load, start, check and flash.").arg(name));
}

int portNumberNamed(const QString& text) {
    bool isNumber = false;
    const int number = text.toInt(&isNumber);
    if (!isNumber || number < PortNames::kLowest || number > PortNames::kHighest)
        throw UsageError(QStringLiteral("--com %1: the port number goes from %2 to %3.")
                             .arg(text)
                             .arg(PortNames::kLowest)
                             .arg(PortNames::kHighest));
    return number;
}

/// --com N selects a port, --com N=DEVICE also says what it stands for; --port DEVICE is COM1.
void readPorts(const QCommandLineParser& parser, CliOptions& options) {
    std::optional<int> mapped;
    std::optional<int> selected;
    const QStringList values = parser.values(QStringLiteral("com"));
    for (const QString& value : values) {
        if (!value.contains(QLatin1Char('='))) {
            selected = portNumberNamed(value);
            continue;
        }
        const auto [number, device] = PortNames::parseOverride(value);
        options.ports.insert_or_assign(number, device);
        mapped = number;
    }
    options.portNumber = selected.value_or(mapped.value_or(1));
    if (!parser.isSet(QStringLiteral("port")))
        return;
    if (options.portNumber != 1)
        throw UsageError(QStringLiteral("--port names the device of COM1, but --com selects COM%1; give one "
                                        "of the two.")
                             .arg(options.portNumber));
    options.ports.insert_or_assign(
        1, PortNames(options.ports).optionDevice(parser.value(QStringLiteral("port"))));
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
    parser.setApplicationDescription(QString::fromLatin1(kDescription));
    const QCommandLineOption help({QStringLiteral("h"), QStringLiteral("help")},
                                  QStringLiteral("Display this help."));
    parser.addOption(help);
    const QCommandLineOption versionOption = parser.addVersionOption();
    parser.addPositionalArgument(QStringLiteral("STEP..."), QStringLiteral("load, start, check or flash"),
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
        options.steps.push_back(stepNamed(name));
    if (options.steps.empty())
        throw UsageError(QStringLiteral("No step given: say load, start, check or flash."));
    try {
        readPorts(parser, options);
    } catch (const RuntimeFailure& failure) {
        throw UsageError(failure.description());
    }
    readWaitLimit(parser, options);
    refuseEmptyValues(parser);
    options.iniPath = parser.value(QStringLiteral("ini"));
    options.erase = parser.isSet(QStringLiteral("erase"));
    for (std::size_t i = 0; i < options.slotValues.size(); ++i)
        options.slotValues[i] = parser.value(QString::fromLatin1(kSlots[i].option));
    return options;
}

} // namespace zrk
