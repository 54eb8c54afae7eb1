#pragma once

#include "cli/BoardNames.h"
#include "cli/PowerSwitch.h"
#include "cli/Printer.h"
#include "cli/Steps.h"
#include "controls/Controls.h"
#include "machine/ProgramOptions.h"

#include <QJsonObject>
#include <QStringList>

#include <array>
#include <chrono>
#include <functional>
#include <optional>

namespace zrk {

/// The time limits of a run; empty for no limit.
struct Limits {
    using Limit = std::optional<std::chrono::milliseconds>;

    Limit run;
    Limit wait;     ///< for the board's power-on
    Limit waitPort; ///< for a port that can be opened, or opened again before the BootID
    Limit flash;    ///< between two answers of the flash-programming image
    Limit expect;
    Limit script; ///< each wait of a script
    std::chrono::milliseconds start{5000};
    std::chrono::milliseconds onWait{PowerSwitch::kLimit}; ///< for the command that switches the power
};

/// The options and steps of the command line.
struct CliOptions {
    StepList steps;
    ProgramOptions program;
    QStringList ports;       ///< the devices of several boards; empty for one, which `program` names
    QStringList names;       ///< what lines and files call the boards
    bool namesLines = false; ///< of one board, too, since it has a label
    std::array<QString, kSlotCount> slotValues; ///< "FILE[,ADDRESS]", empty if not given
    std::array<bool, kSlotCount> leftOut{};     ///< images of the INI file to leave out
    Limits limits;
    /// The end of limits.run, counted from the program's start.
    std::optional<std::chrono::steady_clock::time_point> runEnd = {};
    PrintStyle style;
    QString onWait;               ///< a shell command, run when a board's power-on is awaited; "": none
    QString logFolder;            ///< for a transcript of each board
    QString traceFile;            ///< "": none
    QString transcriptFile;       ///< of one board, in logFolder; "": none
    QString reportFile;           ///< for a line about each board; "": none
    QJsonObject tags;             ///< for the report
    bool repeat = false;          ///< one board after another on each port
    std::optional<bool> dtr = {}; ///< to hold while the port is open
    std::optional<bool> rts = {};
    QStringList unwanted; ///< texts that end the step expect as a failure
    bool erase = false;
    bool dryRun = false;
};

/// Returns the long option that fills a slot, for example "--primary".
[[nodiscard]] QString slotOption(int slot);

/// Reads the arguments, the first of which is the program. Throws UsageError. With `--help` or `--version` it
/// prints the text and returns nothing.
[[nodiscard]] std::optional<CliOptions> parseCommandLine(const QStringList& arguments, const QString& version,
                                                         const std::function<void(const QByteArray&)>& print);

} // namespace zrk
