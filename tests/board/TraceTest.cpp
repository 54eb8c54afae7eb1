#include "board/Replay.h"

#include <gtest/gtest.h>

#include <sstream>

using namespace std::chrono_literals;

namespace {

constexpr const char* kTrace = "# zrk trace 1\n"
                               "    0.000100 open COM1 /dev/x 115200,N,8,1 handshaking none\n"
                               "    0.500000 < 35                  |5|\n"
                               "    0.600000 > 41 42               |AB|\n"
                               "    0.800000 < 6f                  |o|\n"
                               "    0.900000 lost COM1 is gone\n"
                               "    0.900001 close unsent 0\n";

std::string complaint(const std::string& text) {
    std::istringstream stream(text);
    try {
        (void)zrkboard::readTrace(stream);
    } catch (const std::invalid_argument& error) {
        return error.what();
    }
    return "";
}

TEST(Trace, RejectsDamagedLines) {
    const std::string head = "# zrk trace 1\n0.000000 open COM1 x\n";
    const struct {
        std::string text;
        const char* complaint;
    } rows[] = {
        {kTrace, ""},
        {"", "line 1: no port was opened"},
        {"# another trace\n", "line 1: expected \"# zrk trace 1\""},
        {head + "soon < 35 |5|\n", "line 3: \"soon\" is not a time"},
        {head + "0.1 < 35 |5|\n", "line 3: \"0.1\" is not a time"},
        {head + "9223372036854.775807 < 35 |5|\n", "line 3: \"9223372036854.775807\" is too late"},
        {head + "0.100000 ? 35 |5|\n", "line 3: \"?\" is unknown"},
        {head + "0.100000 \x1B[2J 35 |5|\n", "line 3: \"\\x1B[2J\" is unknown"},
        {head + "0.100000 < 3 |5|\n", "line 3: \"3\" is not a byte"},
        {head + "0.100000 < 35 36 |5|\n", "line 3: there are 2 bytes in hexadecimal"},
        {head + "0.100000 < 35\n", "line 3: the bytes are cut off"},
        {head + "0.100000 close\n", "line 3: expected \"close unsent\""},
        {head + "0.100000 < 35 |5|", "line 3: it is cut off"},
        {head + "0.200000 < 35 |5|\n0.100000 < 35 |5|\n", "line 4: its time is before"},
        {"# zrk trace 1\n0.100000 < 35 |5|\n", "line 2: the port is not open here"},
    };
    for (const auto& row : rows) {
        const std::string said = complaint(row.text);
        EXPECT_TRUE(said.rfind(row.complaint, 0) == 0 && said.empty() == (*row.complaint == '\0')) << said;
    }
}

TEST(Trace, IsTheLastOneOfItsFile) {
    const std::string cutOff = std::string("# zrk trace 1\n    0.5 < 3\n") + kTrace;
    for (const std::string& text : {std::string(kTrace) + '\n' + kTrace, cutOff}) {
        std::istringstream stream(text);
        EXPECT_EQ(zrkboard::readTrace(stream).size(), 6U);
    }
}

TEST(Replay, AnswersAfterTheBytesAndThePausesOfTheTrace) {
    std::istringstream text(kTrace);
    std::vector<std::string> told;
    zrkboard::Replay replay(zrkboard::readTrace(text), 0,
                            [&](const std::string& what) { told.push_back(what); });
    const zrkboard::TimePoint begin{};
    const auto output = [&](zrkboard::Duration at) {
        replay.advance(begin + at);
        const auto bytes = replay.takeOutput();
        return std::string(bytes.begin(), bytes.end());
    };
    const auto send = [&](const char* bytes, zrkboard::Duration at) {
        const std::string_view sent(bytes);
        replay.receive(std::vector<std::uint8_t>(sent.begin(), sent.end()), begin + at);
    };
    replay.powerOn(begin);
    replay.portOpened(begin + 10s);
    EXPECT_EQ(output(10498ms), "");
    EXPECT_EQ(output(10500ms), "5");
    send("A", 20s);
    EXPECT_EQ(output(25s), "") << "one byte is missing";
    send("x", 30s);
    EXPECT_EQ(output(30199ms), "");
    EXPECT_EQ(output(30200ms), "o");
    EXPECT_FALSE(replay.hungUp());
    EXPECT_EQ(output(30300ms), "");
    EXPECT_TRUE(replay.hungUp() && replay.isOver());
    const std::string difference = "byte 1 (line 4): expected 0x42 'B', got 0x78 'x'";
    EXPECT_EQ(told, std::vector<std::string>{difference});
    EXPECT_NE(replay.difference().find(difference), std::string::npos);
}

} // namespace
