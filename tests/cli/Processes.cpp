#include "cli/Processes.h"

#include <QElapsedTimer>
#include <QProcessEnvironment>

#include <gtest/gtest.h>

#include <csignal>

namespace {

constexpr int kLimit = 60000; // ms; only a fault lasts that long

QString program(const char* name) {
    return QString::fromStdString(zrkboard::siblingProgram(name));
}

} // namespace

SampleImages::SampleImages() {
    const int status =
        QProcess::execute(program("zrk-board"), {QStringLiteral("--make-images"), m_folder.path()});
    EXPECT_EQ(status, 0);
}

BoardProcess::BoardProcess(const QStringList& options)
    : zrkboard::BoardProcess([&options] {
          std::vector<std::string> plain;
          for (const QString& option : options)
              plain.push_back(option.toStdString());
          return plain;
      }()) {}

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
