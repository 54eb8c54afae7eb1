#include "cli/PowerOnNotice.h"

#include "boot/WaitDialog.h"
#include "cli/Output.h"
#include "machine/ProcessGroup.h"
#include "platform/SecondsText.h"

#include <QProcessEnvironment>

#include <utility>

namespace zrk {

PowerOnNotice::PowerOnNotice(EventLoop& loop, Output& output, std::optional<std::chrono::milliseconds> limit,
                             const QString& command)
    : m_output(output), m_limit(limit), m_command(QProcess::splitCommand(command)),
      m_timer(loop.createTimer([this] { giveUp(); })) {
    m_process.setProcessChannelMode(QProcess::MergedChannels);
    m_process.setStandardInputFile(QProcess::nullDevice());
    startInOwnGroup(m_process); // Ctrl-C must not leave the board without power
    QObject::connect(&m_process, &QProcess::errorOccurred, &m_process, [this](QProcess::ProcessError) {
        m_output.tell(QStringLiteral("--on-wait %1: %2.").arg(m_command.value(0), m_process.errorString()));
    });
    QObject::connect(&m_process, &QProcess::finished, &m_process, [this](int status, QProcess::ExitStatus) {
        const QString said = QString::fromLocal8Bit(m_process.readAll()).trimmed();
        if (status != 0)
            m_output.tell(QStringLiteral("--on-wait %1 ended with status %2; the board is still awaited. %3")
                              .arg(m_command.value(0))
                              .arg(status)
                              .arg(said));
        else if (!said.isEmpty())
            m_output.detail(said);
        if (std::exchange(m_again, false) && m_dialog != nullptr)
            startCommand();
    });
}

/// A power switch that is under way is not left half-way.
PowerOnNotice::~PowerOnNotice() {
    m_process.disconnect();
    constexpr int kLimit = 5000;
    constexpr int kTermination = 1000;
    if (m_process.state() == QProcess::NotRunning)
        return;
    m_output.notice(QStringLiteral("Waiting for --on-wait %1 to end, 5 s at most.").arg(m_command.value(0)));
    if (m_process.waitForFinished(kLimit))
        return;
    m_process.terminate();
    if (!m_process.waitForFinished(kTermination)) {
        m_process.kill();
        m_process.waitForFinished(kTermination);
    }
}

void PowerOnNotice::show(WaitDialog& dialog) {
    m_dialog = &dialog;
    m_output.notice(dialog.lblMsg.Caption);
    if (m_limit)
        m_timer->start(*m_limit);
    startCommand();
}

void PowerOnNotice::startCommand() {
    if (m_command.isEmpty())
        return;
    m_again = m_process.state() != QProcess::NotRunning; // of the wait before; this one's turn comes
    if (m_again)
        return;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("ZRK_PORT"), m_output.place().port);
    m_process.setProcessEnvironment(environment);
    m_process.start(m_command.value(0), m_command.mid(1));
}

void PowerOnNotice::hide() {
    m_timer->stop();
    m_dialog = nullptr;
}

void PowerOnNotice::giveUp() {
    m_timer->stop();
    if (m_dialog == nullptr)
        return;
    m_output.tell(QStringLiteral("--wait ran out: No BootID within %1 s: giving up. Check that the board has "
                                 "power, the service jumper "
                                 "is installed and the cable is on this port.")
                      .arg(secondsText(*m_limit)));
    m_dialog->giveUp();
}

} // namespace zrk
