#include "CancelLatency.h"

#include <QScopeGuard>

#include <atomic>
#include <random>
#include <stdexcept>
#include <thread>

namespace zrkbench {
namespace {

using Clock = std::chrono::steady_clock;

/// Adds a random time, so that the distance from the ticks of the loader's timers varies.
std::chrono::milliseconds withJitter(std::chrono::milliseconds pause) {
    constexpr int kMost = 50;
    return pause + std::chrono::milliseconds(std::random_device{}() % kMost);
}

} // namespace

double cancelLatency(zrk::Loader& loader, const Cancel& cancel, const std::function<void()>& operation) {
    std::atomic<Clock::duration> pressed{};
    std::jthread hand;
    const auto arm = [&] {
        cancel.whenReached();
        hand = std::jthread([&loader, &pressed, pause = withJitter(cancel.pause)] {
            std::this_thread::sleep_for(pause);
            pressed = Clock::now().time_since_epoch();
            loader.loop.post([&loader] { loader.portControl.cmdCancel_Click(); });
        });
    };
    zrk::ConsoleText& console = loader.controls.txtStatus;
    console.onEdit([&](qsizetype, const QString&, zrk::TextOrigin) {
        if (!hand.joinable() && console.text().endsWith(cancel.reached))
            arm();
    });
    const auto forget = qScopeGuard([&console] { console.forgetListeners(); });
    if (cancel.reached.isEmpty())
        arm();
    operation();
    const std::chrono::duration<double> latency = Clock::now().time_since_epoch() - pressed.load();
    if (loader.operation.outcome() != zrk::Outcome::Cancelled || pressed.load() == Clock::duration::zero())
        throw std::runtime_error("an operation was not cancelled: " +
                                 (loader.operation.failure() + console.text()).toStdString());
    return latency.count();
}

} // namespace zrkbench
