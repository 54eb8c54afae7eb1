#include "cli/FullPipe.h"
#include "cli/Processes.h"

#include <gtest/gtest.h>

#include <csignal>

namespace {

struct StalledReader : ::testing::Test {
    [[nodiscard]] QString load(const QStringList& devices) const {
        return images.on(devices.join(" --port "),
                         "--line-rate 0 load start expect zrk> --start-timeout 600");
    }
    const SampleImages images;
    FullPipe pipe;
};

const QString kStill = "--unpaced --verbose --bootid-interval 5";

TEST_F(StalledReader, DelaysItsTextAndNoBoard) {
    BoardProcess first(kStill);
    BoardProcess second(kStill);
    const QStringList cases[] = {{first.device()}, {first.device(), second.device()}};
    for (const QStringList& devices : cases) {
        FullPipe output;
        CliRun run(load(devices), {.output = output.path()});
        ASSERT_TRUE(run.waitFor(QProcess::StandardError, "Port: "));
        EXPECT_TRUE(first.waitForLog("secondary program: started"));
        EXPECT_TRUE(devices.size() == 1 || second.waitForLog("secondary program: started"));
        (void)output.readUntil("zrk>");
        EXPECT_EQ(run.status(), 0) << run.error().toStdString();
    }
}

TEST_F(StalledReader, DoesNotKeepTheProgramFromEnding) {
    {
        const BoardProcess silent("--fault bootid=none");
        CliRun run(load({silent.device()}), {.output = pipe.path()});
        ASSERT_TRUE(run.waitFor(QProcess::StandardError, "Cycle power"));
        run.send(SIGTERM);
        EXPECT_EQ(run.status(), 130) << "during the run";
    }
    const BoardProcess boards[] = {BoardProcess(kStill), BoardProcess(kStill)};
    CliRun run(load({boards[0].device(), boards[1].device()}), {.output = pipe.path()});
    ASSERT_TRUE(run.waitFor(QProcess::StandardError, " status   0 ")) << "the table at the end";
    run.send(SIGINT);
    EXPECT_EQ(run.status(), 130) << "while its text waits for the reader";
    CliRun limited("--timeout 0.1 check", {.output = pipe.path()});
    EXPECT_EQ(limited.status(), 4) << "at its limit";
}

} // namespace
