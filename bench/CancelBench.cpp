#include "BenchLoader.h"
#include "Benches.h"
#include "CancelLatency.h"
#include "FigureTable.h"
#include "Samples.h"
#include "board/launcher/BoardProcess.h"
#include "board/launcher/SerialServer.h"
#include "board/program/PseudoTerminal.h"

#include <csignal>

namespace zrkbench {
namespace {

using namespace std::chrono_literals;

constexpr int kTimes = 10;
constexpr auto kUntilBuffersAreFull = 300ms;
constexpr double kLimit = 0.020; ///< too short to feel

void bringUp(zrk::Loader& loader) {
    loader.bringUp.cmdStartPrimary_Click();
}
void flash(zrk::Loader& loader) {
    loader.flash.cmdPrgFlash_Click();
}

using Operation = void (*)(zrk::Loader& loader);

/// An operation on a simulated board, cancelled where its console's text ends like that.
struct BoardWait {
    const char* name;
    std::vector<std::string> options; ///< of the board
    const char* reached;
    Operation operation;
    bool boardStops = false; ///< the whole process, so that nothing takes bytes off the line
    bool isPaced = false;
    double limit = kLimit;

    [[nodiscard]] double once() const {
        std::vector<std::string> all{"--power-on-delay", "10ms"};
        if (!isPaced)
            all.emplace_back("--unpaced");
        all.insert(all.end(), options.begin(), options.end());
        const zrkboard::BoardProcess board(all);
        constexpr qsizetype kImage = 1 << 20;
        BenchLoader loader(QString::fromStdString(board.device()), {kImage, 1, kImage},
                           isPaced ? std::nullopt : std::optional(0U));
        Cancel cancel{QLatin1String(reached)};
        if (boardStops)
            cancel = {cancel.reached, [&board] { board.signal(SIGSTOP); }, kUntilBuffersAreFull};
        const double latency = cancelLatency(loader.loader(), cancel, [&] { operation(loader.loader()); });
        board.signal(SIGCONT);
        return latency;
    }
};

/// Measures one operation in terminal mode or outside any protocol, on a line with a silent far end.
double onSilentLine(std::chrono::milliseconds pause, const std::function<void(QuietLoader&)>& operation) {
    const zrkboard::PseudoTerminal line;
    QuietLoader quiet(QString::fromStdString(line.devicePath()), 0);
    return cancelLatency(quiet.loader(), {{}, [] {}, pause}, [&] { operation(quiet); });
}

void runScript(QuietLoader& quiet, const QByteArray& script) {
    zrk::Loader& loader = quiet.loader();
    loader.terminal.cmdTerminal_Click();
    loader.script.runScript(quiet.file(QStringLiteral("bench.scr"), script));
}

void addRow(const std::string& wait, double limit, const std::function<double()>& once) {
    Samples samples;
    for (int i = 0; i < kTimes; ++i)
        samples.add(once());
    FigureTable::limited("cancel, " + wait + ": median / worst",
                         timeText(samples.median()) + " / " + timeText(samples.worst()), timeText(limit),
                         samples.worst() / limit);
}

} // namespace

void benchCancel() {
    // A frame that was begun goes out first, as long as the line takes bytes.
    constexpr double kFrameEnd = 0.300 + kLimit;
    const BoardWait onBoard[] = {
        {"waiting for the BootID", {"--fault", "bootid=none"}, "Waiting for BootID .. ", bringUp},
        {"waiting for the boot ROM's reply",
         {"--fault", "second-bootid=none"},
         "Expect 2-nd BootId .. ",
         bringUp},
        {"waiting for the primary boot's reply",
         {"--fault", "accept=none"},
         "acceptance from primary boot .. ",
         bringUp},
        {"transfer on the line", {}, "o ..OK!\r\nSending code .. ", bringUp, false, true},
        {"transfer, queue full, the line stands still", {}, "o ..OK!\r\nSending code .. ", bringUp, true},
        {"waiting for the flash", {"--fault", "ack-header=none"}, "get ACK .. ", flash},
        {"flash data, the line stands still", {}, "FLASH DATA frame .. ", flash, true, false, kFrameEnd},
    };
    for (const BoardWait& wait : onBoard)
        addRow(wait.name, wait.limit, [&wait] { return wait.once(); });
    addRow("script waits", kLimit,
           [] { return onSilentLine(50ms, [](QuietLoader& quiet) { runScript(quiet, "<never\n"); }); });
    addRow("script sends, the line stands still", kLimit, [] {
        constexpr qsizetype kMoreThanBuffersHold = 1 << 19;
        return onSilentLine(kUntilBuffersAreFull, [](QuietLoader& quiet) {
            runScript(quiet, ">" + QByteArray(kMoreThanBuffersHold, 'x') + "\n");
        });
    });
    addRow("expect waits", kLimit, [] {
        return onSilentLine(50ms, [](QuietLoader& quiet) {
            quiet.loader().listener.expect("never", {}, [](const QByteArray&) {});
        });
    });
    addRow("waiting for a port that is not there", kLimit, [] {
        QuietLoader quiet(QStringLiteral("/nonexistent/port"));
        return cancelLatency(quiet.loader(), {}, [&quiet] { quiet.loader().listener.openPort(60s); });
    });
    addRow("a serial server does not answer", kLimit, [] {
        const zrkboard::MuteListener mute;
        QuietLoader quiet(QStringLiteral("rfc2217:127.0.0.1:%1").arg(mute.port()));
        return cancelLatency(quiet.loader(), {}, [&quiet] { bringUp(quiet.loader()); });
    });
}

} // namespace zrkbench
