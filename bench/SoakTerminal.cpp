#include "Program.h"
#include "Soak.h"

#include <QDeadlineTimer>
#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <csignal>
#include <stdexcept>
#include <thread>

namespace zrkbench {
namespace {

using namespace std::chrono_literals;

constexpr auto kStartLimit = 30s;
constexpr auto kHungAfter = 100s;  // the command line's own limit is 60 s
constexpr auto kEndingLimit = 20s; // from a cancel to the end, on a busy machine
constexpr std::int64_t kSdramBase = 0x8000'0000;

QString deviceOf(QProcess& board) {
    const QDeadlineTimer limit(kStartLimit);
    while (!board.canReadLine()) {
        if (!board.waitForReadyRead(static_cast<int>(limit.remainingTime())))
            throw std::runtime_error("zrk-board named no device");
    }
    return QString::fromLocal8Bit(board.readLine()).trimmed();
}

QStringList boardArguments(const SoakPlan& plan, const QTemporaryDir& folder) {
    QStringList all{QStringLiteral("--faults"),
                    QString::fromStdString(plan.faults),
                    QStringLiteral("--verbose"),
                    QStringLiteral("--patience"),
                    QStringLiteral("0"),
                    QStringLiteral("--power-cycles"),
                    QStringLiteral("1"),
                    QStringLiteral("--erase-time"),
                    QStringLiteral("200ms"),
                    QStringLiteral("--dump-iram"),
                    folder.filePath(QStringLiteral("iram"))};
    if (plan.flashes)
        return all << QStringLiteral("--nand") << folder.filePath(QStringLiteral("nand"));
    return all << QStringLiteral("--dump-sdram") << folder.filePath(QStringLiteral("sdram"));
}

/// Makes an option that names a new file of the image, and its address.
QStringList imageOption(const char* option, const SoakImage& image, const QTemporaryDir& folder) {
    QFile file(folder.filePath(QLatin1String(option + 2)));
    if (!file.open(QIODevice::WriteOnly) || file.write(image.bytes) != image.bytes.size())
        throw std::runtime_error("cannot write an image file");
    file.close();
    return {QLatin1String(option),
            QStringLiteral("%1,0x%2").arg(file.fileName()).arg(image.address, 8, 16, QLatin1Char('0'))};
}

QStringList loaderArguments(const SoakPlan& plan, const QTemporaryDir& folder, const QString& device) {
    QStringList all{QStringLiteral("--port"),    device,
                    QStringLiteral("--wait"),    QStringLiteral("20"),
                    QStringLiteral("--timeout"), QStringLiteral("60"),
                    QStringLiteral("--quiet")};
    if (plan.flashes) {
        all << QStringLiteral("--flash-timeout") << QStringLiteral("10");
        all += imageOption("--pg-sibl", plan.primary, folder) + imageOption("--flash", plan.flash, folder);
        if (plan.erases)
            all += QStringLiteral("--erase");
        return all << QStringLiteral("flash");
    }
    all += imageOption("--primary", plan.primary, folder) +
           imageOption("--secondary", plan.secondary, folder) + imageOption("--uboot", plan.uboot, folder);
    return all << QStringLiteral("load") << QStringLiteral("download");
}

QString statusName(const QProcess& loader) {
    if (loader.exitStatus() == QProcess::CrashExit)
        return QStringLiteral("crashed");
    switch (loader.exitCode()) {
    case 0:
        return QStringLiteral("done");
    case 4:
        return QStringLiteral("no answer");
    case 5:
        return QStringLiteral("wrong answer");
    case 6:
        return QStringLiteral("port lost");
    case 130:
        return QStringLiteral("cancelled");
    default:
        return QStringLiteral("status %1").arg(loader.exitCode());
    }
}

bool holds(const QString& file, const SoakImage& image, std::int64_t base) {
    QFile memory(file);
    return memory.open(QIODevice::ReadOnly) && memory.seek(std::int64_t{image.address} - base) &&
           memory.read(image.bytes.size()) == image.bytes;
}

/// Finds the wire's faults in the board's log.
std::vector<MetFault> faultsIn(const QString& log) {
    static const QRegularExpression kLine(
        QStringLiteral("wire: ([a-z-]+) at byte (\\d+) to the (board|loader)"));
    std::vector<MetFault> faults;
    for (auto match = kLine.globalMatch(log); match.hasNext();) {
        const auto line = match.next();
        MetFault fault;
        for (std::size_t kind = 0; kind < zrkboard::kWireFaults; ++kind) {
            if (line.captured(1).toStdString() ==
                zrkboard::wireFaultName(static_cast<zrkboard::WireFault>(kind)))
                fault.kind = static_cast<zrkboard::WireFault>(kind);
        }
        fault.position = line.captured(2).toULongLong() - 1;
        fault.toBoard = line.captured(3) == QLatin1String("board");
        faults.push_back(fault);
    }
    return faults;
}

} // namespace

SoakEnd runOnTerminal(const SoakPlan& plan) {
    const QTemporaryDir folder;
    Program board("zrk-board", boardArguments(plan, folder));
    Program loader("zrk-loader-cli", loaderArguments(plan, folder, deviceOf(board)));
    SoakEnd end;
    const auto milliseconds = [](auto time) {
        return static_cast<int>(std::chrono::duration_cast<std::chrono::milliseconds>(time).count());
    };
    if (plan.cancelAfter && !loader.waitForFinished(milliseconds(*plan.cancelAfter))) {
        end.cancelled = true;
        ::kill(static_cast<pid_t>(loader.processId()), SIGINT);
    }
    const auto limit = end.cancelled ? milliseconds(kEndingLimit) : milliseconds(kHungAfter);
    if (loader.state() != QProcess::NotRunning && !loader.waitForFinished(limit))
        end.status = QStringLiteral("hung");
    else
        end.status = statusName(loader);
    if (board.state() == QProcess::Running)
        board.terminate();
    board.waitForFinished(milliseconds(kStartLimit));
    if (board.exitStatus() == QProcess::CrashExit || board.exitCode() != 0)
        throw std::runtime_error("zrk-board failed");
    end.faults = faultsIn(QString::fromLocal8Bit(board.readAllStandardError()));
    end.intact =
        holds(folder.filePath(QStringLiteral("iram")), plan.primary, 0) &&
        (plan.flashes ? holds(folder.filePath(QStringLiteral("nand")), plan.flash, 0)
                      : holds(folder.filePath(QStringLiteral("sdram")), plan.secondary, kSdramBase) &&
                            holds(folder.filePath(QStringLiteral("sdram")), plan.uboot, kSdramBase));
    return end;
}

} // namespace zrkbench
