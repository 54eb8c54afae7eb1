#include "simulation/BoardPort.h"
#include "support/Rig.h"

#include <thread>

namespace {

using namespace zrktest;
using zrk::Outcome;

/// Runs a loader's whole life on the thread that calls it, at a board that announces itself until it is
/// answered. Returns the outcomes of three bring-ups in a row.
std::vector<Outcome> liveWith(const zrkboard::BoardOptions& options, Duration untilPowerOn) {
    VirtualEventLoop loop;
    zrksim::BoardPort port(loop, options);
    Rig bench(loop, port);
    bench.fill(0, "ZRK SIMULATED PRIMARY BOOT" + QByteArray(3'000, 'p'), "0x0000");
    bench.fill(1, QByteArray(20'000, 's'), "0x80000004");
    bench.waitDialog.whenShown = [&](zrk::WaitDialog&) { loop.after(untilPowerOn, [&] { port.powerOn(); }); };
    std::vector<Outcome> outcomes;
    for (int run = 0; run < 3; ++run) {
        bench.loader.bringUp.cmdStartPrimary_Click();
        outcomes.push_back(bench.loader.operation.outcome());
    }
    EXPECT_EQ(bench.console().contains("Secondary Executable loaded"), outcomes.back() == Outcome::Done);
    return outcomes;
}

zrkboard::BoardOptions boardWith(const char* fault) {
    zrkboard::BoardOptions options;
    options.misbehaviour.faults.push_back(zrkboard::parseFault(fault));
    return options;
}

TEST(TwoLoaders, OnTheirOwnThreadsDoNotAffectEachOther) {
    std::vector<Outcome> good;
    std::vector<Outcome> silent;
    {
        const std::jthread first([&] { good = liveWith({}, 90s); });
        const std::jthread second([&] { silent = liveWith(boardWith("X=none"), 100ms); });
    }
    EXPECT_EQ(good, std::vector<Outcome>(3, Outcome::Done));
    EXPECT_EQ(silent, std::vector<Outcome>(3, Outcome::TimedOut));
}

} // namespace
