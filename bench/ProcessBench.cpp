#include "Benches.h"
#include "board/launcher/BoardProcess.h"

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QThread>

#include <cstdio>
#include <stdexcept>
#include <unistd.h>

namespace zrkbench {
namespace {

QByteArray procFile(qint64 pid, const char* name) {
    QFile file(QStringLiteral("/proc/%1/%2").arg(pid).arg(QLatin1String(name)));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// User and system time of a process, in seconds.
double cpuSeconds(qint64 pid) {
    const QByteArray stat = procFile(pid, "stat");
    const QList<QByteArray> fields = stat.mid(stat.lastIndexOf(')') + 2).split(' ');
    constexpr qsizetype kUserTime = 11;
    constexpr qsizetype kSystemTime = 12;
    return (fields.value(kUserTime).toDouble() + fields.value(kSystemTime).toDouble()) /
           static_cast<double>(sysconf(_SC_CLK_TCK));
}

double peakMemoryMiB(qint64 pid) {
    for (const QByteArray& line : procFile(pid, "status").split('\n')) {
        if (line.startsWith("VmHWM:"))
            return line.mid(6).simplified().split(' ').value(0).toDouble() / 1024.0;
    }
    return 0.0;
}

/// The command line's "load" on a board, ended when the measurement is over.
class LoadRun {
  public:
    LoadRun(const zrkboard::BoardProcess& board, const QString& primary) {
        m_process.setStandardErrorFile(QProcess::nullDevice());
        m_process.setStandardOutputFile(QProcess::nullDevice());
        m_process.start(QString::fromStdString(zrkboard::siblingProgram("zrk-loader-cli")),
                        {QStringLiteral("--port"), QString::fromStdString(board.device()),
                         QStringLiteral("--primary"), primary, QStringLiteral("load")});
        if (!m_process.waitForStarted())
            throw std::runtime_error("zrk-loader-cli did not start");
    }
    ~LoadRun() {
        m_process.kill();
        m_process.waitForFinished();
    }
    LoadRun(const LoadRun&) = delete;
    LoadRun& operator=(const LoadRun&) = delete;
    [[nodiscard]] qint64 pid() const { return m_process.processId(); }

  private:
    QProcess m_process;
};

QString makeImage(const QTemporaryDir& folder, qsizetype size) {
    QFile file(folder.filePath(QStringLiteral("image.bin")));
    if (!file.open(QIODevice::WriteOnly) || file.write(QByteArray(size, '\x5A')) != size)
        throw std::runtime_error("cannot write an image file");
    return file.fileName();
}

} // namespace

void benchIdleWait() {
    constexpr unsigned kSeconds = 10;
    const QTemporaryDir folder;
    const zrkboard::BoardProcess board({"--fault", "bootid=none"});
    const LoadRun run(board, makeImage(folder, 1000));
    QThread::sleep(1);
    const double before = cpuSeconds(run.pid());
    QThread::sleep(kSeconds);
    std::printf("waiting for a BootID: %.2f %% of a core over %u s\n",
                100.0 * (cpuSeconds(run.pid()) - before) / kSeconds, kSeconds);
}

void benchMemory() {
    constexpr qsizetype kSize = qsizetype{64} << 20;
    const QTemporaryDir folder;
    const zrkboard::BoardProcess board({"--unpaced"});
    const LoadRun run(board, makeImage(folder, kSize));
    QThread::sleep(5);
    std::printf("sending a 64 MiB image: %.1f MiB above the file's size at the peak\n",
                peakMemoryMiB(run.pid()) - 64.0);
}

} // namespace zrkbench
