#pragma once

#include "machine/PortNames.h"

#include <QString>

#include <cstdint>
#include <optional>

class QCommandLineParser;

namespace zrk {

/// What both programs are told on their command lines: which ports there are, and which INI file.
struct ProgramOptions {
    PortNames::Overrides ports;
    int portNumber = 1;                    ///< the port to use, 1 to 8
    std::optional<std::uint32_t> lineRate; ///< bytes a second, 0 for a port that is no line
    QString iniPath;                       ///< absolute; empty: where the loader looks by itself
};

/// Adds the options --port, --com, --line-rate and --ini.
void addProgramOptions(QCommandLineParser& parser);

/// Reads them. Throws RuntimeFailure (InvalidArgument) that says what is wrong with one.
[[nodiscard]] ProgramOptions readProgramOptions(const QCommandLineParser& parser);

/// The same with another reading of --port: the device that it names, "" for none.
[[nodiscard]] ProgramOptions readProgramOptions(const QCommandLineParser& parser, const QString& port);

/// The value of an option, "" when it is not given. An empty one throws RuntimeFailure (InvalidArgument),
/// which says that `what` is needed: a shell variable that is not set must not silently mean the default.
[[nodiscard]] QString givenValue(const QCommandLineParser& parser, const QString& name,
                                 const QString& what = QStringLiteral("a value"));

} // namespace zrk
