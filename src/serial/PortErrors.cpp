#include "serial/PortErrors.h"

#include "platform/MessageBoxes.h"
#include "platform/RuntimeFailure.h"

namespace zrk {

void showPortError(SharedState& state, MessageBoxes& boxes, int portNumber, PortErrorHint hint,
                   const RuntimeFailure& failure) {
    const QString problem = hint == PortErrorHint::OtherIo ? QStringLiteral("or other I/O problem")
                                                           : QStringLiteral("or other download problem");
    state.MessageText = QStringLiteral("Error communicating with COM") + QString::number(portNumber) +
                        QStringLiteral("\r\n") + problem + QStringLiteral("\r\nError: ") +
                        failure.description();
    (void)boxes.show(
        {state.MessageText, MessageIcon::Exclamation, MessageButtons::Ok, QStringLiteral("Error")});
}

} // namespace zrk
