#include "support/Exchanges.h"

namespace {

using namespace zrktest;

TEST(TwoLoaders, SideBySideInOneProcess) {
    VirtualEventLoop loop;
    ScriptedPort firstPort(loop);
    ScriptedPort secondPort(loop);
    Bench first(loop, firstPort);
    Bench second(loop, secondPort);
    for (Bench* bench : {&first, &second})
        fillBringUp(*bench);
    // The second one is started while the first one waits for its board, and times out.
    firstPort.steps = secondPort.steps = bringUpSteps();
    firstPort.steps[0].delay = 2s;
    secondPort.steps[3].answer.clear();
    loop.after(1s, [&] {
        second.loader.bringUp.cmdStartPrimary_Click();
        EXPECT_TRUE(first.loader.state.OperationActive && firstPort.isOpen());
        EXPECT_NE(first.waitDialog.open, nullptr);
        EXPECT_EQ(first.console(), "Waiting for BootID .. ");
    });
    first.loader.bringUp.cmdStartPrimary_Click();

    EXPECT_EQ(second.loader.operation.outcome(), zrk::Outcome::TimedOut);
    EXPECT_EQ(second.boxes.shown.size(), 1);
    second.expectAtRest();
    EXPECT_EQ(first.loader.operation.outcome(), zrk::Outcome::Done);
    EXPECT_EQ(first.console(), bringUpTexts().join(QString()));
    EXPECT_TRUE(first.boxes.shown.isEmpty() && firstPort.isOpen());
}

} // namespace
