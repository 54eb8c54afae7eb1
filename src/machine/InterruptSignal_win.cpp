#include "machine/InterruptSignal.h"

#include <mutex>
#include <utility>
#include <windows.h>

namespace zrk {
namespace {

// The system calls a plain function on a thread of its own, which can reach the object only in this way.
std::mutex handlerGuard;
InterruptSignal::Handler* presentHandler = nullptr; // guarded by the mutex

bool handOver(bool isEnd) {
    const std::lock_guard lock(handlerGuard);
    if (presentHandler == nullptr)
        return false;
    (*presentHandler)(std::make_shared<const InterruptSignal::Signal>(InterruptSignal::Signal{isEnd}));
    return true;
}

BOOL WINAPI onConsoleEvent(DWORD event) {
    const bool isEnd = event != CTRL_C_EVENT && event != CTRL_BREAK_EVENT;
    if (!handOver(isEnd))
        return FALSE;
    // The process is ended as soon as this returns, or after some seconds. The program's own end comes sooner
    // and ends this thread.
    if (isEnd)
        Sleep(INFINITE);
    return TRUE;
}

// Never removed: the system holds a lock while it runs the handler, which for a closed window lasts until the
// end, and removing it would wait for that lock.
bool installOnce() {
    static const bool isInstalled = SetConsoleCtrlHandler(onConsoleEvent, TRUE) != 0;
    return isInstalled;
}

} // namespace

struct InterruptSignal::Private {
    Handler handler;
};

void InterruptSignal::hold() {} // the system has a thread of its own for them

InterruptSignal::InterruptSignal(Handler handler, const Limits& /*limits*/)
    : m_private(std::make_unique<Private>(Private{std::move(handler)})) {
    {
        const std::lock_guard lock(handlerGuard);
        presentHandler = &m_private->handler;
    }
    (void)installOnce();
}

InterruptSignal::~InterruptSignal() {
    const std::lock_guard lock(handlerGuard);
    presentHandler = nullptr;
}

void InterruptSignal::endAfter(std::chrono::steady_clock::time_point /*moment*/, int /*status*/) {}

} // namespace zrk
