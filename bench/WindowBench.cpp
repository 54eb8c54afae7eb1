#include "Benches.h"
#include "FigureTable.h"
#include "Program.h"
#include "QuietLoader.h"
#include "Samples.h"
#include "TerminalBench.h"

#include <cstdio>
#include <stdexcept>

namespace zrkbench {
namespace {

constexpr int kPatience = 300'000; // milliseconds

/// Runs the window program in this mode; returns its output.
QByteArray windowSays(const QString& mode) {
    Program program("zrk-bench-window", {mode});
    if (!program.waitForFinished(kPatience) || program.exitStatus() != QProcess::NormalExit ||
        program.exitCode() != 0)
        throw std::runtime_error("zrk-bench-window failed: " + program.readAllStandardError().toStdString());
    return program.readAllStandardOutput();
}

/// Measures the seconds to the first paint.
Samples firstPaints(const QString& mode) {
    constexpr int kTimes = 10;
    Samples samples;
    for (int i = 0; i < kTimes; ++i)
        samples.add(windowSays(mode).trimmed().toDouble() / 1000.0);
    return samples;
}

} // namespace

void benchWindow() {
    // Without a display the window is drawn into memory.
    if (!qEnvironmentVariableIsSet("DISPLAY") && !qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    const double window = firstPaints(QStringLiteral("start")).median();
    const double bare = firstPaints(QStringLiteral("bare")).median();
    FigureTable::compared("start to first paint of the window", timeText(window),
                          timeText(bare) + " (a window with an empty text)", window / bare);
    std::fputs(windowSays(QStringLiteral("terminal")).constData(), stdout);
    std::fflush(stdout);
    QuietLoader quiet(QStringLiteral("/nonexistent/port"));
    benchChunks(quiet, "no window", [] {});
    benchTerminalSpeed("no window", [](QuietLoader&) { return nullptr; });
}

} // namespace zrkbench
