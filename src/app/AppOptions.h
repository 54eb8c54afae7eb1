#pragma once

#include "machine/ProgramOptions.h"

#include <QString>
#include <QStringList>

#include <optional>

namespace zrk {

/// The options of the window program's command line.
struct AppOptions : ProgramOptions {
    bool bringUp = false; ///< bring the board up at once, as if its two buttons had been clicked
};

/// The result of reading a command line: options to run with, or a text to print before the program ends.
struct AppCommandLine {
    std::optional<AppOptions> options;
    QString message;
    int exitStatus = 0;
};

/// Reads the arguments, the program's name first. --help and --version give a text, a wrong argument gives a
/// message and status 2.
[[nodiscard]] AppCommandLine readCommandLine(const QStringList& arguments);

} // namespace zrk
