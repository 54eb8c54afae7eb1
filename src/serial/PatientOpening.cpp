#include "serial/PatientOpening.h"

#include "serial/Link.h"

namespace zrk {

bool openWithin(Link& link, std::optional<std::chrono::milliseconds> limit) {
    const auto begin = link.loop.now();
    const auto look = link.loop.wakeEvery(EventLoop::kLook);
    while (!link.state.CancelRequested) {
        try {
            link.port.OpenComPort();
            return true;
        } catch (const RuntimeFailure& failure) {
            if (failure.kind() != FailureKind::PortNotOpened || !limit || link.loop.now() - begin >= *limit)
                throw;
        }
        link.loop.wait();
    }
    return false;
}

} // namespace zrk
