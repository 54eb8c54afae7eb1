#include "BoardRig.h"

#include <gtest/gtest.h>

#include <map>

using namespace std::chrono_literals;
using zrkboard::State;

namespace {

zrkboard::BoardOptions withFault(const std::string& fault) {
    zrkboard::BoardOptions options;
    options.misbehaviour.faults.push_back(zrkboard::parseFault(fault));
    return options;
}

// Plays a loader that ignores the answers, and collects the board's answer at each step.
std::map<std::string, std::string> playAll(zrkboard::BoardOptions options,
                                           BoardRig::Milliseconds pause = 0ms) {
    options.startDelay = 0ms;
    std::map<std::string, std::string> heard;
    BoardRig rig(options);
    heard["bootid"] = rig.wait(500ms + pause).substr(0, 1);
    heard["second-bootid"] = rig.send("A", pause);
    heard["R"] = rig.send("U3", pause);
    heard["X"] = rig.send(BoardRig::header(0, rig.kPrimary.size()) + rig.kPrimary, pause);
    heard["accept"] = rig.send("p" + BoardRig::header(0x80000004, 1), pause);
    heard["t"] = rig.send("p", pause);

    rig.board.powerOn(rig.now);
    rig.wait(500ms + pause);
    rig.send("AU3" + BoardRig::header(0, rig.kPgSibl.size()) + rig.kPgSibl, pause);
    heard["F"] = rig.send("F", pause);
    heard["version"] = rig.send(std::string("S\x02\x0A\0\0\0\xA6\xA6\0\0\x03", 11), pause);
    heard["ack-header"] =
        rig.send(std::string("\x02\x18\0\0\0\xAE\0\0\0\0\x01\0\0\0\x03\0\0\0\x01\0\0\0\0\x03", 24), pause);
    heard["ack-data"] = rig.send(std::string("\x02\x0A\0\0\0\xAFz\0\0\x03", 10), pause);
    heard["ack-end"] = rig.send(std::string("\x02\x0C\0\0\0\xA3\xA3\0\0\0\0\x03", 12), pause);
    heard["ack-complete"] = rig.send(std::string("\x02\x0A\0\0\0\xB1\xB1\0\0\x03", 10), pause);
    return heard;
}

} // namespace

TEST(Faults, EveryStepCanGoWrongInEveryWay) {
    const auto good = playAll({});
    ASSERT_EQ(good.at("ack-complete"), std::string("\x02\x0A\0\0\0\x06\x06\x17\0\x03", 10));
    for (const auto& [step, answer] : good) {
        SCOPED_TRACE(step);
        ASSERT_FALSE(answer.empty());
        const auto heardWith = [&step = step](const std::string& fault, BoardRig::Milliseconds pause = 0ms) {
            return playAll(withFault(std::string(step).append("=").append(fault)), pause).at(step);
        };
        EXPECT_EQ(heardWith("wrong"), "?" + answer.substr(1));
        EXPECT_EQ(heardWith("wrong:0x80"), "\x80" + answer.substr(1));
        EXPECT_EQ(heardWith("none"), "");
        EXPECT_EQ(heardWith("refuse"), "E");
        EXPECT_EQ(heardWith("late:0.4", 399ms), "");
        EXPECT_EQ(heardWith("late:0.4", 400ms), answer);
        for (std::size_t offset = 0; answer.size() == 10 && offset < 10; ++offset)
            EXPECT_EQ(heardWith("wrong@" + std::to_string(offset) + ":Z"),
                      std::string(answer).replace(offset, 1, "Z"));
    }
}

TEST(Faults, WhatTheBoardDoesAfterwards) {
    for (const auto& [fault, state] : {std::pair{"R=refuse", State::Silent},
                                       {"X=refuse", State::Silent},
                                       {"R=none", State::PrimaryWaiting}}) {
        BoardRig rig(withFault(fault));
        rig.startPrimary();
        EXPECT_EQ(rig.board.state(), state) << fault;
    }
    BoardRig secondOnly(withFault("accept#2=refuse"));
    secondOnly.startPrimary();
    EXPECT_EQ(secondOnly.send("p" + BoardRig::header(0x80000004, 1) + "p"), "ot");
    EXPECT_EQ(secondOnly.send("u" + BoardRig::header(0x80100000, 1)), "E");
    EXPECT_EQ(secondOnly.send("k" + BoardRig::header(0x80800000, 1) + "k"), "ot")
        << "it waits for commands again";

    auto options = withFault("bootid=none");
    options.faultyRuns = 1;
    BoardRig nextRun(options);
    EXPECT_EQ(nextRun.wait(10s), "");
    nextRun.board.powerOn(nextRun.now);
    EXPECT_EQ(nextRun.wait(500ms), "5");
}

TEST(Faults, NoiseSlowAnswersAndALostByte) {
    zrkboard::BoardOptions options;
    options.misbehaviour.noise = "\xFFxy";
    options.misbehaviour.answerDelay = 250ms;
    options.misbehaviour.loseCodeByte = 36; // the secondary program's second
    BoardRig rig(options);
    EXPECT_EQ(rig.wait(1000ms), "\xFFxy55");
    EXPECT_EQ(rig.send("A", 249ms), "");
    EXPECT_EQ(rig.wait(1ms), "5");
    rig.send("U3" + BoardRig::header(0, rig.kPrimary.size()) + rig.kPrimary, 1s);
    EXPECT_EQ(rig.send("p" + BoardRig::header(0x80000004, 3) + "abc", 10s), "o") << "still waiting for one";
    EXPECT_EQ(rig.send("d", 250ms), "t");
    EXPECT_EQ(text(rig.board.sdram().read(0x80000004, 3)), "acd");
}

TEST(Faults, TheLineHangsUpAtTheGivenPlace) {
    zrkboard::BoardOptions code;
    code.misbehaviour.hangUpAfterCode = 40; // the primary boot's and 6 of the secondary program's
    BoardRig inCode(code);
    inCode.startPrimary();
    inCode.send("p" + BoardRig::header(0x80000004, 10) + "abcde");
    EXPECT_FALSE(inCode.board.hungUp());
    EXPECT_EQ(inCode.send("f"), "");
    EXPECT_TRUE(inCode.board.hungUp());
    EXPECT_EQ(inCode.send("ghij", 10s), "");
    EXPECT_EQ(inCode.board.codeBytes(), 40U);

    zrkboard::BoardOptions any;
    any.misbehaviour.hangUpAfterReceived = 3;
    BoardRig atUnlock(any);
    atUnlock.wait(500ms);
    EXPECT_EQ(atUnlock.send("AU"), "5");
    EXPECT_EQ(atUnlock.send("3", 1s), "") << "the answer to the last byte does not get out";
    EXPECT_TRUE(atUnlock.board.hungUp());

    zrkboard::BoardOptions timed;
    timed.misbehaviour.hangUpAt = 1200ms;
    BoardRig idle(timed);
    EXPECT_EQ(idle.wait(1199ms), "55");
    EXPECT_EQ(idle.wait(1ms), "");
    EXPECT_TRUE(idle.board.hungUp());
    EXPECT_FALSE(idle.board.nextDeadline());
}

TEST(Faults, RejectBadTextsWithAReason) {
    for (const char* wrong :
         {"", "R", "R=", "nosuch=none", "R#0=none", "R#x=none", "R=none:1", "R=late", "R=late:x", "R=wrong@1",
          "ack-end=wrong@10", "R=wrong:", "R=wrong:0x100", "R=wrong:ab", "R=refuse@1", "R=silly"})
        EXPECT_THROW((void)zrkboard::parseFault(wrong), std::invalid_argument) << wrong;
}
