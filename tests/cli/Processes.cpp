#include "cli/Processes.h"

#include <QElapsedTimer>
#include <QProcessEnvironment>

#include <gtest/gtest.h>

#include <csignal>

namespace {

constexpr int kLimit = 60000; // ms; only a fault lasts that long

QString program(const char* name) {
    return QStringLiteral(ZRK_BIN "/") + QString::fromLatin1(name);
}

} // namespace

SampleImages::SampleImages() {
    const int status =
        QProcess::execute(program("zrk-board"), {QStringLiteral("--make-images"), m_folder.path()});
    EXPECT_EQ(status, 0);
}

BoardProcess::BoardProcess(const QStringList& options) {
    m_process.start(program("zrk-board"), options);
    while (!m_process.canReadLine() && m_process.waitForReadyRead(kLimit)) {
    }
    m_device = QString::fromLocal8Bit(m_process.readLine()).trimmed();
    EXPECT_FALSE(m_device.isEmpty());
}

BoardProcess::~BoardProcess() {
    stop();
}

void BoardProcess::stop() {
    m_process.terminate();
    if (!m_process.waitForFinished(kLimit))
        m_process.kill();
}

bool BoardProcess::waitForLog(const QByteArray& text) {
    m_process.setReadChannel(QProcess::StandardError);
    do {
        m_log += m_process.readAllStandardError();
    } while (!m_log.contains(text) && m_process.waitForReadyRead(kLimit));
    return m_log.contains(text);
}

CliRun::CliRun(const QStringList& arguments, const Terminals& terminals) {
    m_process.setStandardInputFile(terminals.input.isEmpty() ? QProcess::nullDevice() : terminals.input);
    if (!terminals.output.isEmpty())
        m_process.setStandardOutputFile(terminals.output);
    if (!terminals.error.isEmpty())
        m_process.setStandardErrorFile(terminals.error);
    m_process.start(program("zrk-loader-cli"), arguments);
}

void CliRun::collect() {
    if (!m_process.isReadable())
        return; // both streams are terminals
    m_output += m_process.readAllStandardOutput();
    m_error += m_process.readAllStandardError();
}

bool CliRun::waitFor(const QByteArray& text, QByteArray& stream) {
    QElapsedTimer clock;
    clock.start();
    while (!stream.contains(text)) {
        if (clock.hasExpired(kLimit) || m_process.state() == QProcess::NotRunning)
            return false;
        m_process.setReadChannel(&stream == &m_output ? QProcess::StandardOutput : QProcess::StandardError);
        m_process.waitForReadyRead(kLimit);
        collect();
    }
    return true;
}

bool CliRun::waitForOutput(const QByteArray& text) {
    return waitFor(text, m_output);
}

bool CliRun::waitForError(const QByteArray& text) {
    return waitFor(text, m_error);
}

void CliRun::send(int signal) {
    kill(static_cast<pid_t>(m_process.processId()), signal);
}

int CliRun::status() {
    if (m_process.state() != QProcess::NotRunning && !m_process.waitForFinished(kLimit))
        return -1;
    collect();
    return m_process.exitStatus() == QProcess::NormalExit ? m_process.exitCode() : -2;
}

const QByteArray& CliRun::output() {
    collect();
    return m_output;
}

const QByteArray& CliRun::error() {
    collect();
    return m_error;
}
