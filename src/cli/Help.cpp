#include "cli/Help.h"

#include "cli/Steps.h"

#include <array>
#include <vector>

namespace zrk {
namespace {

QString row(const QString& what, const QString& help) {
    constexpr qsizetype kColumn = 26;
    return QStringLiteral("  ") + what.leftJustified(kColumn) + QLatin1Char(' ') + help + QLatin1Char('\n');
}

QString rowOf(const OptionFacts& option) {
    const QString letter =
        option.letter == 0 ? QStringLiteral("    ") : QStringLiteral("-%1, ").arg(QLatin1Char(option.letter));
    const QString value = QString::fromLatin1(option.value);
    return row(letter + QStringLiteral("--") + QLatin1String(option.name) +
                   (value.isEmpty() ? QString() : QLatin1Char(' ') + value),
               QString::fromLatin1(option.help));
}

} // namespace

std::span<const OptionFacts> allOptions() {
    // clang-format off
    static constexpr std::array kOptions{
        OptionFacts{"port", 'p', "DEVICE", "the board's port or LABEL=PORT; repeat it for more", "", true},
        OptionFacts{"com", 'c', "N[=DEVICE]", "use COMN, 1 to 8; with =DEVICE it stands for that"},
        OptionFacts{"line-rate", 0, "BYTES", "bytes a second of the line (11520); 0: no line", kPortSteps},
        OptionFacts{"dtr", 0, "STATE", "hold DTR on or off while the port is open", kPortSteps},
        OptionFacts{"rts", 0, "STATE", "hold RTS on or off while the port is open", kPortSteps},
        OptionFacts{"ini", 'i', "FILE", "preset the images; else zrk-loader.INI beside this", "", true},
        OptionFacts{"primary", 0, "FILE[,ADDR]", "primary boot, into IRAM"},
        OptionFacts{"secondary", 0, "FILE[,ADDR]", "secondary executable, into SDRAM"},
        OptionFacts{"uboot", 0, "FILE[,ADDR]", "U-Boot image"},
        OptionFacts{"rootfs", 0, "FILE[,ADDR]", "root file system image"},
        OptionFacts{"kernel", 0, "FILE[,ADDR]", "kernel image"},
        OptionFacts{"flash", 0, "FILE[,ADDR]", "image for the NAND flash"},
        OptionFacts{"pg-sibl", 0, "FILE[,ADDR]", "flash-programming image, into IRAM"},
        OptionFacts{"without", 0, "IMAGE", "leave out this image of the INI file, as in kernel"},
        OptionFacts{"erase", 'e', "", "erase the whole flash before it is programmed", "flash"},
        OptionFacts{"dry-run", 'n', "", "check and print the plan, send nothing", "", true},
        OptionFacts{"timeout", 't', "SECONDS", "limit of the whole run; each limit ends with 4", "", true},
        OptionFacts{"wait", 'w', "SECONDS", "limit for the board's power-on", "load flash", true},
        OptionFacts{"wait-port", 0, "SECONDS", "wait so long for the port, ends with 3", kPortSteps},
        OptionFacts{"start-timeout", 0, "SECONDS", "limit for a program's first output (5)", "start"},
        OptionFacts{"flash-timeout", 0, "SECONDS", "limit between two answers of pg_sibl", "flash"},
        OptionFacts{"expect-timeout", 0, "SECONDS", "limit for expect, which ends with 7", "expect verify"},
        OptionFacts{"not", 0, "TEXT", "a text that ends expect as a failure, with 5", "expect"},
        OptionFacts{"script-timeout", 0, "SECONDS", "limit for each line of a script, ends with 7", "script"},
        OptionFacts{"on-wait", 0, "CMD", "shell command to cycle the power, sees ZRK_PORT", "load flash"},
        OptionFacts{"on-wait-timeout", 0, "SECONDS", "limit of CMD (60), which ends with 8", "load flash"},
        OptionFacts{"log", 0, "DIR", "keep a transcript with time stamps of each board"},
        OptionFacts{"report", 0, "FILE", "append a line of JSON about each board", kPortSteps},
        OptionFacts{"tag", 0, "KEY=VALUE", "put this into each line of the report, too", kPortSteps},
        OptionFacts{"repeat", 0, "", "go on with the next board at each port, to Ctrl-C", "load flash"},
        OptionFacts{"trace", 0, "FILE", "record both directions; zrk-board --replay plays it", kPortSteps},
        OptionFacts{"json", 'j', "", "one JSON object a line on standard output"},
        OptionFacts{"progress", 0, "WHEN", "auto, always or never"},
        OptionFacts{"quiet", 'q', "", "no notices, no progress"},
        OptionFacts{"verbose", 'v', "", "times and answers, too", "", true},
        OptionFacts{"help", 'h', "", "print this help; --help all prints all of it", "", true},
        OptionFacts{"version", 'V', "", "print the version"},
    };
    // clang-format on
    return kOptions;
}

QString helpText(HelpPage page) {
    const bool isAll = page == HelpPage::All;
    QString text = QStringLiteral("Usage: zrk-loader-cli [OPTION]... STEP...\n"
                                  "Brings up and programs boards over one serial line each (115200 8N1).\n\n"
                                  "Steps, in the order given:\n");
    for (const StepFacts& step : allSteps()) {
        if (isAll || step.isBasic)
            text += row(QString::fromLatin1(step.name) + QLatin1Char(' ') + QLatin1String(step.argument),
                        QString::fromLatin1(step.help));
    }
    text += QStringLiteral("\nOptions:\n");
    for (const OptionFacts& option : allOptions()) {
        if (isAll || option.isBasic)
            text += rowOf(option);
    }
    if (!isAll)
        return text + QStringLiteral("Example: zrk-loader-cli -p /dev/ttyUSB0 -i board.INI load start\n");
    text += QStringLiteral("\nDEVICE: a device file, a COM name, tcp:HOST:PORT or rfc2217:HOST:PORT.\n"
                           "Network connections are not encrypted: use a tunnel or a closed network.\n"
                           "SECONDS: a number, or as in 90s, 5m, 2h.\n"
                           "\nConsole and board go to standard output, all else to standard error.\n"
                           "Status: 0 done, 1 internal failure or output lost, 2 usage or address error,\n"
                           "nothing sent, 3 port not opened, 4 no answer in time, 5 wrong answer or\n"
                           "refusal, 6 port lost, 7 text not seen, 8 power not switched, 130 cancelled\n"
                           "(Ctrl-C).\n"
                           "\nExamples:\n"
                           "  zrk-loader-cli -p /dev/ttyUSB0 -i board.INI load start\n"
                           "  zrk-loader-cli -p /dev/ttyUSB0 -i board.INI load download start expect login:\n"
                           "  zrk-loader-cli -p A -p B -i board.INI -t 5m --on-wait 'power-cycle' flash\n");
    return text;
}

} // namespace zrk
