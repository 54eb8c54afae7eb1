#include "serial/PortErrors.h"

#include "controls/Desk.h"
#include "platform/RuntimeFailure.h"

namespace zrk {

void showPortError(Desk& desk, int portNumber, PortErrorHint hint, const RuntimeFailure& failure) {
    if (failure.kind() == FailureKind::Cancelled)
        return; // the user did it
    const QString problem = hint == PortErrorHint::OtherIo ? QStringLiteral("or other I/O problem")
                                                           : QStringLiteral("or other download problem");
    desk.tell(QStringLiteral("Error communicating with COM") + QString::number(portNumber) +
                  QStringLiteral("\r\n") + problem + QStringLiteral("\r\nError: ") + failure.description(),
              MessageIcon::Exclamation, QStringLiteral("Error"));
}

} // namespace zrk
