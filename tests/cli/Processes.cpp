#include "cli/Processes.h"

#include <QFile>

#include <gtest/gtest.h>

#include <csignal>
#include <unistd.h>

namespace {

constexpr int kLimit = 600'000; // ms; only a fault lasts that long

QString program(const char* name) {
    return QString::fromStdString(zrkboard::siblingProgram(name));
}

std::vector<std::string> words(const QString& line) {
    std::vector<std::string> words;
    for (const QString& word : QProcess::splitCommand(line))
        words.push_back(word.toStdString());
    return words;
}

} // namespace

QByteArray contents(const QString& path) {
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << path.toStdString();
    return file.readAll();
}

SampleImages::SampleImages() {
    EXPECT_EQ(QProcess::execute(program("zrk-board"), {"--make-images", m_folder.path()}), 0);
}

BoardProcess::BoardProcess(const QString& options) : zrkboard::BoardProcess(words(options)) {}

CliRun::CliRun(const QString& arguments, const Terminals& terminals) {
    m_process.setStandardInputFile(terminals.input.isEmpty() ? QProcess::nullDevice() : terminals.input);
    m_process.setStandardOutputFile(terminals.output); // "": collected
    m_process.setStandardErrorFile(terminals.error);
    if (terminals.signal != 0)
        m_process.setChildProcessModifier([signal = terminals.signal] {
            sigset_t one;
            sigemptyset(&one);
            sigaddset(&one, signal);
            sigprocmask(SIG_BLOCK, &one, nullptr);
            kill(getpid(), signal);
        });
    m_process.start(program("zrk-loader-cli"), QProcess::splitCommand(arguments));
}

bool CliRun::waitFor(QProcess::ProcessChannel channel, const QByteArray& text) {
    m_process.setReadChannel(channel);
    while (!m_process.peek(m_process.bytesAvailable()).contains(text)) {
        if (!m_process.waitForReadyRead(kLimit))
            return false;
    }
    return true;
}

void CliRun::send(int signal) {
    kill(static_cast<pid_t>(m_process.processId()), signal);
}

void CliRun::sendUntilItEnds(int signal) {
    constexpr int kPause = 100; // ms
    do {
        send(signal);
    } while (!m_process.waitForFinished(kPause) && m_process.state() != QProcess::NotRunning);
}

int CliRun::status() {
    if (m_process.state() != QProcess::NotRunning && !m_process.waitForFinished(kLimit))
        return -1;
    if (m_process.isReadable()) { // unless both streams are terminals
        m_output = m_process.readAllStandardOutput();
        m_error = m_process.readAllStandardError();
    }
    return m_process.exitStatus() == QProcess::NormalExit ? m_process.exitCode() : -2;
}
