#include "cli/PowerOnNotice.h"

#include "boot/WaitDialog.h"
#include "cli/Output.h"

namespace zrk {

PowerOnNotice::PowerOnNotice(EventLoop& loop, Output& output, std::optional<std::chrono::milliseconds> limit)
    : m_output(output), m_limit(limit), m_timer(loop.createTimer([this] { giveUp(); })) {}

void PowerOnNotice::show(WaitDialog& dialog) {
    m_dialog = &dialog;
    m_output.tell(dialog.lblMsg.Caption);
    if (m_limit)
        m_timer->start(*m_limit);
}

void PowerOnNotice::hide() {
    m_timer->stop();
    m_dialog = nullptr;
}

void PowerOnNotice::giveUp() {
    m_timer->stop();
    if (m_dialog == nullptr)
        return;
    m_output.tell(
        QStringLiteral("No BootID within %1 s: giving up. Check that the board has power, the service jumper "
                       "is installed and the cable is on this port.")
            .arg(std::chrono::duration<double>(*m_limit).count()));
    m_dialog->giveUp();
}

} // namespace zrk
