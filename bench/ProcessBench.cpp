#include "Benches.h"
#include "FigureTable.h"
#include "Program.h"
#include "Samples.h"
#include "board/launcher/BoardProcess.h"
#include "board/launcher/SerialServer.h"

#include <QFile>
#include <QTemporaryDir>
#include <QThread>

#include <chrono>
#include <csignal>
#include <stdexcept>
#include <unistd.h>

namespace zrkbench {
namespace {

constexpr int kPatience = 60'000; // milliseconds

QString makeImage(const QTemporaryDir& folder, qsizetype size) {
    QFile file(folder.filePath(QStringLiteral("image.bin")));
    if (!file.open(QIODevice::WriteOnly) || file.write(QByteArray(size, '\x5A')) != size)
        throw std::runtime_error("cannot write an image file");
    return file.fileName();
}

/// A run of the command line's "load" on a device, ended when the measurement is over.
class LoadRun {
  public:
    LoadRun(const QString& device, qsizetype imageSize)
        : m_program("zrk-loader-cli", {QStringLiteral("--port"), device, QStringLiteral("--primary"),
                                       makeImage(m_folder, imageSize), QStringLiteral("load")}) {}

    void waitFor(const char* said) {
        while (!m_said.contains(said)) {
            if (!m_program.waitForReadyRead(kPatience))
                throw std::runtime_error("zrk-loader-cli did not come to " + std::string(said));
            m_said += m_program.readAllStandardOutput();
        }
    }

    /// Returns the seconds of user and system time.
    [[nodiscard]] double cpuSeconds() const {
        const QByteArray stat = procFile("stat");
        const QList<QByteArray> fields = stat.mid(stat.lastIndexOf(')') + 2).split(' ');
        constexpr qsizetype kUserTime = 11;
        constexpr qsizetype kSystemTime = 12;
        return (fields.value(kUserTime).toDouble() + fields.value(kSystemTime).toDouble()) /
               static_cast<double>(sysconf(_SC_CLK_TCK));
    }

    [[nodiscard]] double peakMemoryMiB() const {
        for (const QByteArray& line : procFile("status").split('\n')) {
            if (line.startsWith("VmHWM:"))
                return line.mid(6).simplified().split(' ').value(0).toDouble() / 1024.0;
        }
        return 0.0;
    }

    /// Sends Ctrl-C; returns the exit status.
    [[nodiscard]] int interrupt() {
        (void)::kill(static_cast<pid_t>(m_program.processId()), SIGINT);
        return m_program.waitForFinished(kPatience) ? m_program.exitCode() : -1;
    }

  private:
    [[nodiscard]] QByteArray procFile(const char* name) const {
        QFile file(QStringLiteral("/proc/%1/%2").arg(m_program.processId()).arg(QLatin1String(name)));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    QTemporaryDir m_folder;
    QByteArray m_said;
    Program m_program;
};

void addIdle(const std::string& where, const QString& device) {
    constexpr unsigned kSeconds = 10;
    LoadRun run(device, 1000);
    run.waitFor("Waiting for BootID");
    QThread::sleep(1);
    const double before = run.cpuSeconds();
    QThread::sleep(kSeconds);
    const double share = (run.cpuSeconds() - before) / kSeconds;
    FigureTable::limited("processor while waiting for a BootID, " + where, percentText(share) + " of a core",
                         "a core (a poll that never sleeps)", share);
}

void addInterrupt() {
    constexpr int kTimes = 10;
    constexpr double kLimit = 0.1;
    const zrkboard::BoardProcess board({"--fault", "bootid=none"});
    Samples samples;
    for (int i = 0; i < kTimes; ++i) {
        LoadRun run(QString::fromStdString(board.device()), 1000);
        run.waitFor("Waiting for BootID");
        QThread::msleep(50);
        const auto begin = std::chrono::steady_clock::now();
        constexpr int kCancelled = 130;
        if (run.interrupt() != kCancelled)
            throw std::runtime_error("Ctrl-C did not end zrk-loader-cli");
        samples.add(std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count());
    }
    FigureTable::limited("Ctrl-C to the end of zrk-loader-cli: median / worst",
                         timeText(samples.median()) + " / " + timeText(samples.worst()), timeText(kLimit),
                         samples.worst() / kLimit);
}

} // namespace

void benchIdleWait() {
    const zrkboard::BoardProcess board({"--fault", "bootid=none"});
    addIdle("near", QString::fromStdString(board.device()));
    {
        const zrkboard::SerialServer server(QString::fromStdString(board.device()));
        addIdle("serial server (rfc2217)", server.rfc2217());
    }
    addInterrupt();
}

void benchMemory() {
    constexpr double kMiB = 64.0;
    constexpr qsizetype kSize = qsizetype{64} << 20;
    const zrkboard::BoardProcess board({"--unpaced"});
    LoadRun run(QString::fromStdString(board.device()), kSize);
    run.waitFor("Sending code");
    QThread::sleep(3);
    const double peak = run.peakMemoryMiB();
    FigureTable::limited("peak memory of zrk-loader-cli with an image of 64 MiB", memoryText(peak),
                         memoryText(kMiB) + " (the file once)", peak / kMiB);
}

} // namespace zrkbench
