#include "machine/InterruptSignal.h"
#include "platform/EventLoop.h"

#include <mutex>
#include <windows.h>

namespace zrk {
namespace {

// The system calls a plain function on a thread of its own, so there is no other way to the object.
std::mutex interruptedGuard;
EventLoop* interruptedLoop = nullptr;                    // guarded by the mutex
std::function<void(bool)>* interruptedHandler = nullptr; // used on the loop's thread only

bool post(bool ended) {
    const std::lock_guard lock(interruptedGuard);
    if (interruptedLoop == nullptr)
        return false;
    interruptedLoop->post([ended] {
        if (interruptedHandler != nullptr)
            (*interruptedHandler)(ended);
    });
    return true;
}

BOOL WINAPI onConsoleEvent(DWORD event) {
    const bool ended = event != CTRL_C_EVENT && event != CTRL_BREAK_EVENT;
    if (!post(ended))
        return FALSE;
    // The process is ended as soon as this returns, or after some seconds. The program's own end is sooner,
    // and takes this thread with it.
    if (ended)
        Sleep(INFINITE);
    return TRUE;
}

// Never taken out again: the system holds a lock while it runs the handler, which for a closed window is
// until the end, and taking it out would wait for that lock.
bool installOnce() {
    static const bool isInstalled = SetConsoleCtrlHandler(onConsoleEvent, TRUE) != 0;
    return isInstalled;
}

} // namespace

struct InterruptSignal::Private {
    std::function<void(bool)> interrupted;
};

void InterruptSignal::hold() {} // the system has a thread of its own for them

InterruptSignal::InterruptSignal(EventLoop& loop, std::function<void(bool)> interrupted)
    : m_private(std::make_unique<Private>(Private{std::move(interrupted)})) {
    interruptedHandler = &m_private->interrupted;
    {
        const std::lock_guard lock(interruptedGuard);
        interruptedLoop = &loop;
    }
    (void)installOnce();
}

InterruptSignal::~InterruptSignal() {
    const std::lock_guard lock(interruptedGuard);
    interruptedLoop = nullptr;
    interruptedHandler = nullptr;
}

} // namespace zrk
