#pragma once

#include "machine/PortNames.h"

#include <QString>

#include <cstdint>
#include <optional>

class QCommandLineParser;

namespace zrk {

/// The options that both programs share: the ports, and the INI file.
struct ProgramOptions {
    PortNames::Overrides ports;
    int portNumber = 1;                    ///< the port to use, 1 to 8
    std::optional<std::uint32_t> lineRate; ///< bytes a second, 0 for a port without a line
    QString iniPath;                       ///< absolute; empty: the loader searches by itself
};

/// Adds the options --port, --com, --line-rate and --ini.
void addProgramOptions(QCommandLineParser& parser);

/// Reads them. Throws RuntimeFailure (InvalidArgument) that says what is wrong with one.
[[nodiscard]] ProgramOptions readProgramOptions(const QCommandLineParser& parser);

/// The same with another reading of --port: the device that it names, "" for none.
[[nodiscard]] ProgramOptions readProgramOptions(const QCommandLineParser& parser, const QString& port);

/// Returns the value of an option, "" if it is not given. An empty one throws RuntimeFailure
/// (InvalidArgument), which names `what`: an unset shell variable must not silently mean the default.
[[nodiscard]] QString givenValue(const QCommandLineParser& parser, const QString& name,
                                 const QString& what = QStringLiteral("a value"));

} // namespace zrk
