#include "cli/PowerSwitch.h"

#include "machine/ProcessGroup.h"
#include "platform/SecondsText.h"

#include <QProcessEnvironment>

#include <utility>

namespace zrk {
namespace {

constexpr qsizetype kMostSaid = 4096;
constexpr std::chrono::milliseconds kUntilForce = std::chrono::seconds(2);

} // namespace

PowerSwitch::PowerSwitch(EventLoop& loop, QString command, std::chrono::milliseconds limit)
    : m_command(std::move(command)), m_limit(limit), m_timer(loop.createTimer([this] { tick(); })) {
    m_process.setProcessChannelMode(QProcess::MergedChannels);
    m_process.setStandardInputFile(QProcess::nullDevice());
    setShellCommand(m_process, m_command);
    startInOwnGroup(m_process); // Ctrl-C must not leave the board without power
    QObject::connect(&m_process, &QProcess::readyRead, &m_process, [this] { takeOutput(); });
    QObject::connect(&m_process, &QProcess::errorOccurred, &m_process, [this](QProcess::ProcessError error) {
        if (error == QProcess::FailedToStart)
            finish(
                QStringLiteral("--on-wait: the shell cannot be started: %1. Nothing was sent to the board.")
                    .arg(m_process.errorString()));
    });
    QObject::connect(&m_process, &QProcess::finished, &m_process,
                     [this](int status, QProcess::ExitStatus how) {
                         takeOutput();
                         finish(faultOf(status, how));
                     });
}

PowerSwitch::~PowerSwitch() {
    m_process.disconnect();
    m_process.leave();
}

void PowerSwitch::start(const QString& port, const QString& label, Ended ended) {
    // One that has exceeded its limit; a second one would work against it.
    if (m_process.state() != QProcess::NotRunning)
        return ended(
            QStringLiteral("--on-wait: the command for the board before is still running, so it was not "
                           "started for this one. Nothing was sent to the board. Check the power switch."));
    m_said.clear();
    m_isAskedToEnd = false;
    m_hasRunOut = false;
    m_ended = std::move(ended);
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("ZRK_PORT"), port);
    environment.insert(QStringLiteral("ZRK_LABEL"), label);
    m_process.setProcessEnvironment(environment);
    m_timer->start(m_limit);
    m_process.start();
}

void PowerSwitch::end() {
    if (!isRunning() || std::exchange(m_isAskedToEnd, true))
        return;
    endGroup(m_process, false);
    m_timer->start(kUntilForce);
}

void PowerSwitch::tick() {
    m_timer->stop();
    if (m_isAskedToEnd)
        return endGroup(m_process, true);
    m_hasRunOut = true;
    finish(QStringLiteral(
               "--on-wait-timeout ran out: the command has not ended within %1 s. It is left running, "
               "and nothing was sent to the board. Check the power switch, or raise the limit.")
               .arg(secondsText(m_limit)));
}

void PowerSwitch::finish(const QString& fault) {
    m_timer->stop();
    if (m_ended)
        std::exchange(m_ended, nullptr)(fault);
}

/// Reads all of it, so that the command never has to wait for a reader.
void PowerSwitch::takeOutput() {
    m_said += m_process.readAll();
    if (m_said.size() > 2 * kMostSaid)
        m_said = m_said.right(kMostSaid);
}

QString PowerSwitch::said() const {
    return QString::fromLocal8Bit(m_said.right(kMostSaid)).trimmed();
}

QString PowerSwitch::faultOf(int status, QProcess::ExitStatus how) const {
    if (m_isAskedToEnd)
        return QStringLiteral("The command of --on-wait was ended half-way. Check the board's power.");
    if (how == QProcess::NormalExit && status == 0)
        return {};
    const QString end = how == QProcess::NormalExit ? QStringLiteral("ended with status %1").arg(status)
                                                    : QStringLiteral("was ended by a signal");
    const QString words = said().isEmpty() ? QStringLiteral(".") : QStringLiteral(": ") + said();
    return QStringLiteral("--on-wait \"%1\" %2%3\nNothing was sent to the board. Check the power switch.")
        .arg(m_command, end, words);
}

} // namespace zrk
