#pragma once

#include "machine/ProgramOptions.h"

#include <QString>
#include <QStringList>

#include <optional>

namespace zrk {

/// What the window program is told on its command line.
struct AppOptions : ProgramOptions {
    bool bringUp = false; ///< bring the board up at once, as if its two buttons had been clicked
};

/// The outcome of reading a command line: options to run with, or a text to print and leave with.
struct AppCommandLine {
    std::optional<AppOptions> options;
    QString message;
    int exitStatus = 0;
};

/// Reads the arguments, the program's name first; --help and --version are answered with a text, what
/// is wrong with one and status 2.
[[nodiscard]] AppCommandLine readCommandLine(const QStringList& arguments);

} // namespace zrk
