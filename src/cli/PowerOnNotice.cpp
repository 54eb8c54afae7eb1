#include "cli/PowerOnNotice.h"

#include "boot/WaitDialog.h"
#include "cli/Output.h"
#include "platform/SecondsText.h"

namespace zrk {

PowerOnNotice::PowerOnNotice(EventLoop& loop, Output& output, const Limits& limits, const QString& command)
    : m_loop(loop), m_output(output), m_limit(limits.wait), m_portLimit(limits.waitPort),
      m_switch(loop, command, limits.onWait), m_timer(loop.createTimer([this] { giveUp(); })) {}

PowerOnNotice::~PowerOnNotice() = default;

void PowerOnNotice::show(WaitDialog& dialog) {
    m_dialog = &dialog;
    m_output.notice(dialog.lblMsg.Caption);
    if (m_switch.isSet())
        startSwitch();
    else if (m_limit)
        m_timer->start(*m_limit);
}

void PowerOnNotice::startSwitch() {
    m_switch.start(m_output.place().port, m_output.place().label,
                   [this](const QString& fault) { onSwitched(fault); });
}

bool PowerOnNotice::switchPower(const std::function<bool()>& isStopped) {
    m_output.notice(QStringLiteral("The port is not there: the command of --on-wait switches the power."));
    startSwitch();
    const auto look = m_loop.wakeEvery(EventLoop::kLook);
    while (m_switch.isRunning() && !isStopped())
        m_loop.wait();
    return !m_switch.isRunning() && !m_hasFailed;
}

void PowerOnNotice::onSwitched(const QString& fault) {
    m_hasFailed = !fault.isEmpty();
    if (m_switch.hasRunOut())
        m_output.noteLimit(QStringLiteral("on-wait-timeout"));
    if (!fault.isEmpty())
        m_output.tell(fault);
    else if (!m_switch.said().isEmpty())
        m_output.detail(m_switch.said());
    if (m_dialog == nullptr)
        return;
    if (!fault.isEmpty())
        m_dialog->giveUp(Outcome::PowerNotSwitched);
    else if (m_limit)
        m_timer->start(*m_limit);
}

std::optional<std::chrono::milliseconds> PowerOnNotice::reopeningLimit(const QString& why) {
    if (m_portLimit)
        m_output.notice(QStringLiteral("%1 Waiting for the port to come back, --wait-port %2 s at most.")
                            .arg(why, secondsText(*m_portLimit)));
    return m_portLimit;
}

void PowerOnNotice::hide() {
    m_timer->stop();
    m_dialog = nullptr;
}

void PowerOnNotice::giveUp() {
    m_timer->stop();
    if (m_dialog == nullptr)
        return;
    m_output.noteLimit(QStringLiteral("wait"));
    m_output.tell(QStringLiteral("--wait ran out: No BootID within %1 s. Check that the board has "
                                 "power, the service jumper "
                                 "is installed and the cable is on this port.")
                      .arg(secondsText(*m_limit)));
    m_dialog->giveUp(Outcome::LimitReached);
}

void PowerOnNotice::awaitSwitch(std::optional<TimePoint> end) {
    if (!m_switch.isRunning())
        return;
    m_output.notice(QStringLiteral("Waiting for the command of --on-wait to end. Another Ctrl-C ends it."));
    const auto look = m_loop.wakeEvery(EventLoop::kLook);
    while (m_switch.isRunning() && !(end && m_loop.now() >= *end))
        m_loop.wait();
    if (m_switch.isRunning())
        m_output.tell(QStringLiteral("The command of --on-wait is left running. Check the power switch."));
}

void PowerOnNotice::endSwitch() {
    if (m_dialog == nullptr)
        m_switch.end();
}

} // namespace zrk
