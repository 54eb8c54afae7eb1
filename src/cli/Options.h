#pragma once

#include "controls/Controls.h"
#include "machine/PortNames.h"

#include <QStringList>

#include <array>
#include <chrono>
#include <optional>
#include <stdexcept>
#include <vector>

namespace zrk {

enum class Step { Load, Start, Check, Flash };

/// What was asked for on the command line.
struct CliOptions {
    std::vector<Step> steps;
    PortNames::Overrides ports;
    int portNumber = 1;
    QString iniPath;                            ///< empty: the default beside the program
    std::array<QString, kSlotCount> slotValues; ///< "FILE[,ADDRESS]", empty where not given
    std::optional<std::chrono::milliseconds> waitLimit;
    bool erase = false;
};

/// A command line that cannot be carried out; what() says what is wrong with it.
class UsageError : public std::runtime_error {
  public:
    explicit UsageError(const QString& text) : std::runtime_error(text.toStdString()) {}
};

/// The long option that fills a slot, for example "--primary".
[[nodiscard]] QString slotOption(int slot);

/// Reads the arguments, the first of which is the program. Throws UsageError. With `--help` or
/// `--version` it prints to standard output and returns nothing.
[[nodiscard]] std::optional<CliOptions> parseCommandLine(const QStringList& arguments,
                                                         const QString& version);

} // namespace zrk
