#include "machine/InterruptSignal.h"
#include "platform/EventLoop.h"

#include <atomic>
#include <windows.h>

namespace zrk {
namespace {

// The system calls a plain function on a thread of its own, so there is no other way to the object.
std::atomic<EventLoop*> interruptedLoop{nullptr};
std::atomic<std::function<void(bool)>*> interruptedHandler{nullptr};

BOOL WINAPI onConsoleEvent(DWORD event) {
    EventLoop* loop = interruptedLoop;
    std::function<void(bool)>* handler = interruptedHandler;
    if (loop == nullptr || handler == nullptr)
        return FALSE;
    const bool ended = event != CTRL_C_EVENT && event != CTRL_BREAK_EVENT;
    loop->post([handler, ended] { (*handler)(ended); });
    // The process is ended as soon as this returns, or after some seconds. The program's own end is sooner,
    // and takes this thread with it.
    if (ended)
        Sleep(INFINITE);
    return TRUE;
}

} // namespace

struct InterruptSignal::Private {
    std::function<void(bool)> interrupted;
};

InterruptSignal::InterruptSignal(EventLoop& loop, std::function<void(bool)> interrupted)
    : m_private(std::make_unique<Private>(Private{std::move(interrupted)})) {
    interruptedHandler = &m_private->interrupted;
    interruptedLoop = &loop;
    SetConsoleCtrlHandler(onConsoleEvent, TRUE);
}

InterruptSignal::~InterruptSignal() {
    SetConsoleCtrlHandler(onConsoleEvent, FALSE);
    interruptedLoop = nullptr;
    interruptedHandler = nullptr;
}

} // namespace zrk
