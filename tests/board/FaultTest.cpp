#include "Bench.h"

#include <gtest/gtest.h>

#include <map>

using namespace std::chrono_literals;
using zrkboard::State;

namespace {

zrkboard::BoardOptions withFaults(std::initializer_list<const char*> faults) {
    zrkboard::BoardOptions options;
    for (const char* fault : faults)
        options.misbehaviour.faults.push_back(zrkboard::parseFault(fault));
    return options;
}

const std::string kFlashDialogue[] = {
    "F",
    "S" + std::string("\x02\x0A\0\0\0\xA6\xA6\0\0\x03", 10),
    std::string("\x02\x18\0\0\0\xAE\0\0\0\0\x01\0\0\0\x03\0\0\0\x01\0\0\0\0\x03", 24),
    std::string("\x02\x0A\0\0\0\xAFz\0\0\x03", 10),
    std::string("\x02\x0C\0\0\0\xA3\xA3\0\0\0\0\x03", 12),
    std::string("\x02\x0A\0\0\0\xB1\xB1\0\0\x03", 10),
};

// Plays a loader that does not mind what it hears and collects the board's answer at each step.
std::map<std::string, std::string> playAll(zrkboard::BoardOptions options, std::chrono::milliseconds pause) {
    options.startDelay = 0ms;
    std::map<std::string, std::string> heard;
    Bench bench(options);
    heard["bootid"] = bench.wait(500ms + pause).substr(0, 1);
    heard["second-bootid"] = bench.send("A", pause);
    heard["R"] = bench.send("U3", pause);
    heard["X"] = bench.send(Bench::header(0, bench.kPrimary.size()) + bench.kPrimary, pause);
    heard["accept"] = bench.send("p" + Bench::header(0x80000004, 1), pause);
    heard["t"] = bench.send("p", pause);

    bench.board.powerOn(bench.now);
    bench.wait(500ms + pause);
    bench.send("AU3" + Bench::header(0, bench.kPgSibl.size()) + bench.kPgSibl, pause);
    const char* const steps[] = {"F", "version", "ack-header", "ack-data", "ack-end", "ack-complete"};
    for (std::size_t i = 0; i < std::size(steps); ++i)
        heard[steps[i]] = bench.send(kFlashDialogue[i], pause);
    return heard;
}

} // namespace

// Each step goes wrong in each way; nothing that was answered before it changes.
TEST(Faults, EveryStepCanGoWrong) {
    const auto good = playAll({}, 0ms);
    ASSERT_EQ(good.at("ack-complete"), std::string("\x02\x0A\0\0\0\x06\x06\x17\0\x03", 10));
    for (const auto& [step, answer] : good) {
        SCOPED_TRACE(step);
        ASSERT_FALSE(answer.empty());
        EXPECT_EQ(playAll(withFaults({(step + "=wrong").c_str()}), 0ms).at(step), "?" + answer.substr(1));
        EXPECT_EQ(playAll(withFaults({(step + "=wrong:0x80").c_str()}), 0ms).at(step),
                  "\x80" + answer.substr(1));
        EXPECT_EQ(playAll(withFaults({(step + "=none").c_str()}), 0ms).at(step), "");
        EXPECT_EQ(playAll(withFaults({(step + "=refuse").c_str()}), 0ms).at(step), "E");
        EXPECT_EQ(playAll(withFaults({(step + "=late:0.4").c_str()}), 399ms).at(step), "");
        EXPECT_EQ(playAll(withFaults({(step + "=late:0.4").c_str()}), 400ms).at(step), answer);
    }
}

TEST(Faults, AnAcknowledgementCanBeWrongAtAnyPosition) {
    const auto good = playAll({}, 0ms).at("ack-data");
    for (std::size_t offset = 0; offset < 10; ++offset) {
        auto expected = good;
        expected[offset] = 'Z';
        const std::string fault = "ack-data=wrong@" + std::to_string(offset) + ":Z";
        EXPECT_EQ(playAll(withFaults({fault.c_str()}), 0ms).at("ack-data"), expected);
    }
}

TEST(Faults, WhatTheBoardDoesAfterwards) {
    Bench refused(withFaults({"R=refuse"}));
    refused.unlock();
    EXPECT_EQ(refused.board.state(), State::Silent);
    Bench notRunning(withFaults({"X=refuse"}));
    notRunning.startPrimary();
    EXPECT_EQ(notRunning.board.state(), State::Silent);
    Bench missing(withFaults({"R=none"}));
    missing.startPrimary();
    EXPECT_EQ(missing.board.state(), State::PrimaryWaiting)
        << "the board does not know that it was not heard";

    Bench secondOnly(withFaults({"accept#2=refuse"}));
    secondOnly.startPrimary();
    EXPECT_EQ(secondOnly.send("p" + Bench::header(0x80000004, 1) + "p"), "ot");
    EXPECT_EQ(secondOnly.send("u" + Bench::header(0x80100000, 1)), "E");
    EXPECT_EQ(secondOnly.send("k" + Bench::header(0x80800000, 1) + "k"), "ot")
        << "it waits for commands again";
}

TEST(Faults, MisbehaveInTheFirstRunsOnly) {
    auto options = withFaults({"bootid=none"});
    options.faultyRuns = 1;
    Bench bench(options);
    EXPECT_EQ(bench.wait(10s), "");
    bench.board.powerOn(bench.now);
    EXPECT_EQ(bench.wait(500ms), "5");
}

TEST(Faults, NoiseAndSlowAnswers) {
    zrkboard::BoardOptions options;
    options.misbehaviour.noise = "\xFFxy";
    options.misbehaviour.answerDelay = 250ms;
    Bench bench(options);
    EXPECT_EQ(bench.wait(1000ms), "\xFFxy5"
                                  "5");
    EXPECT_EQ(bench.send("A", 249ms), "");
    EXPECT_EQ(bench.wait(1ms), "5");
}

TEST(Faults, TheLineHangsUpWhereItIsTold) {
    zrkboard::BoardOptions code;
    code.misbehaviour.hangUpAfterCode = 40; // the primary boot's and 6 of the secondary program's
    Bench inCode(code);
    inCode.startPrimary();
    inCode.send("p" + Bench::header(0x80000004, 10) + "abcde");
    EXPECT_FALSE(inCode.board.hungUp());
    EXPECT_EQ(inCode.send("f"), "");
    EXPECT_TRUE(inCode.board.hungUp());
    EXPECT_EQ(inCode.send("ghij", 10s), "");
    EXPECT_EQ(inCode.board.codeBytes(), 40U);

    zrkboard::BoardOptions any;
    any.misbehaviour.hangUpAfterReceived = 3;
    Bench atUnlock(any);
    atUnlock.wait(500ms);
    EXPECT_EQ(atUnlock.send("AU"), "5");
    EXPECT_EQ(atUnlock.send("3", 1s), "") << "the answer to the last byte does not get out";
    EXPECT_TRUE(atUnlock.board.hungUp());

    zrkboard::BoardOptions timed;
    timed.misbehaviour.hangUpAt = 1200ms;
    Bench idle(timed);
    EXPECT_EQ(idle.wait(1199ms), "55");
    EXPECT_EQ(idle.wait(1ms), "");
    EXPECT_TRUE(idle.board.hungUp());
    EXPECT_FALSE(idle.board.nextDeadline());
}

TEST(Faults, ALostByteIsMissed) {
    zrkboard::BoardOptions options;
    options.misbehaviour.loseCodeByte = 36;
    Bench bench(options);
    bench.startPrimary();
    EXPECT_EQ(bench.send("p" + Bench::header(0x80000004, 3) + "abc", 10s), "o") << "still waiting for one";
    EXPECT_EQ(bench.send("d"), "t");
    EXPECT_EQ(text(bench.board.sdram().read(0x80000004, 3)), "acd");
}

TEST(Faults, SayWhatIsWrongWithTheirText) {
    for (const char* wrong :
         {"", "R", "R=", "nosuch=none", "R#0=none", "R#x=none", "R=none:1", "R=late", "R=late:x", "R=wrong@1",
          "ack-end=wrong@10", "R=wrong:", "R=wrong:0x100", "R=wrong:ab", "R=refuse@1", "R=silly"})
        EXPECT_THROW((void)zrkboard::parseFault(wrong), std::invalid_argument) << wrong;
}
