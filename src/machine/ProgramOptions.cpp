#include "machine/ProgramOptions.h"

#include "platform/RuntimeFailure.h"

#include <QCommandLineParser>
#include <QFileInfo>

namespace zrk {
namespace {

const QString kPort = QStringLiteral("port");
const QString kCom = QStringLiteral("com");
const QString kLineRate = QStringLiteral("line-rate");
const QString kIni = QStringLiteral("ini");

[[noreturn]] void refuse(const QString& why) {
    throw RuntimeFailure(FailureKind::InvalidArgument, why);
}

int portNumberNamed(const QString& text) {
    bool isNumber = false;
    const int number = text.toInt(&isNumber);
    if (!isNumber || number < PortNames::kLowest || number > PortNames::kHighest)
        refuse(QStringLiteral("--com %1: the port number goes from %2 to %3.")
                   .arg(text)
                   .arg(PortNames::kLowest)
                   .arg(PortNames::kHighest));
    return number;
}

/// Reads the ports: --com N selects one, --com N=DEVICE also names its device; --port DEVICE is COM1.
void readPorts(const QCommandLineParser& parser, const QString& port, ProgramOptions& options) {
    std::optional<int> mapped;
    std::optional<int> selected;
    for (const QString& value : parser.values(kCom)) {
        if (!value.contains(QLatin1Char('='))) {
            selected = portNumberNamed(value);
            continue;
        }
        const auto [number, device] = PortNames::parseOverride(value);
        options.ports.insert_or_assign(number, device);
        mapped = number;
    }
    options.portNumber = selected.value_or(port.isEmpty() ? mapped.value_or(1) : 1);
    if (port.isEmpty())
        return;
    if (options.portNumber != 1)
        refuse(
            QStringLiteral("--port names the device of COM1, but --com selects COM%1; give one of the two.")
                .arg(options.portNumber));
    options.ports.insert_or_assign(1, PortNames(options.ports).optionDevice(port));
}

std::optional<std::uint32_t> readLineRate(const QCommandLineParser& parser) {
    const QString text = givenValue(parser, kLineRate);
    if (text.isEmpty())
        return {};
    bool isNumber = false;
    const std::uint32_t rate = text.toUInt(&isNumber);
    constexpr std::uint32_t kHighest = 100'000'000;
    if (!isNumber || rate > kHighest)
        refuse(QStringLiteral("--line-rate %1: give the bytes a second as a number from 0 (no line) to %2.")
                   .arg(text)
                   .arg(kHighest));
    return rate;
}

} // namespace

void addProgramOptions(QCommandLineParser& parser) {
    parser.addOptions(
        {{kPort,
          QStringLiteral(
              "Use DEVICE (a device file, a COM name, tcp:HOST:PORT or rfc2217:HOST:PORT) as COM1."),
          QStringLiteral("DEVICE")},
         {kCom,
          QStringLiteral("Use port COMN, 1 to 8. With =DEVICE it stands for that device; may be repeated."),
          QStringLiteral("N[=DEVICE]")},
         {kLineRate,
          QStringLiteral(
              "What the line carries, in bytes a second; 0 for a port that is no line. Without this: "
              "11520, as 115200 baud do."),
          QStringLiteral("BYTES")},
         {kIni,
          QStringLiteral("Preset the images from FILE; relative paths in it start at its folder. Without "
                         "this: zrk-loader.INI beside the program, else in the folder zrk-loader of the "
                         "user's configuration, if there is one."),
          QStringLiteral("FILE")}});
}

ProgramOptions readProgramOptions(const QCommandLineParser& parser) {
    return readProgramOptions(parser, givenValue(parser, kPort));
}

ProgramOptions readProgramOptions(const QCommandLineParser& parser, const QString& port) {
    ProgramOptions options;
    readPorts(parser, port, options);
    options.lineRate = readLineRate(parser);
    const QString ini = givenValue(parser, kIni, QStringLiteral("a file name"));
    if (!ini.isEmpty())
        options.iniPath = QFileInfo(ini).absoluteFilePath();
    return options;
}

QString givenValue(const QCommandLineParser& parser, const QString& name, const QString& what) {
    QString value = parser.value(name);
    if (parser.isSet(name) && value.isEmpty())
        refuse(QStringLiteral("--%1 needs %2, but it is empty.").arg(name, what));
    return value;
}

} // namespace zrk
