#include "cli/WaitNotice.h"

#include "boot/WaitDialog.h"
#include "cli/Terminal.h"

namespace zrk {

WaitNotice::WaitNotice(EventLoop& loop, std::optional<std::chrono::milliseconds> limit)
    : m_limit(limit), m_timer(loop.createTimer([this] { giveUp(); })) {}

void WaitNotice::show(WaitDialog& dialog) {
    m_dialog = &dialog;
    tell(dialog.lblMsg.Caption);
    if (m_limit)
        m_timer->start(*m_limit);
}

void WaitNotice::hide() {
    m_timer->stop();
    m_dialog = nullptr;
}

void WaitNotice::giveUp() {
    m_timer->stop();
    if (m_dialog == nullptr)
        return;
    tell(
        QStringLiteral("No BootID within %1 s: giving up. Check that the board has power, the service jumper "
                       "is installed and the cable is on this port.")
            .arg(std::chrono::duration<double>(*m_limit).count()));
    m_dialog->giveUp();
}

} // namespace zrk
