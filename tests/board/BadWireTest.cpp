#include "board/BadWire.h"

#include "board/Board.h"

#include <gtest/gtest.h>

#include <bit>
#include <stdexcept>
#include <utility>

using namespace std::chrono_literals;
using namespace zrkboard;

namespace {

// A far end that sends back each byte at once.
class Echo final : public FarEnd {
  public:
    void powerOn(TimePoint /*now*/) override { ++m_powerOns; }
    [[nodiscard]] unsigned powerOns() const override { return m_powerOns; }
    void receive(std::span<const std::uint8_t> bytes, TimePoint now) override {
        heard.insert(heard.end(), bytes.begin(), bytes.end());
        said.insert(said.end(), bytes.begin(), bytes.end());
        when = now;
    }
    void advance(TimePoint /*now*/) override {}
    [[nodiscard]] std::optional<TimePoint> nextDeadline() const override { return {}; }
    [[nodiscard]] std::vector<std::uint8_t> takeOutput() override { return std::exchange(said, {}); }
    void hangUp(const std::string& /*why*/) override { m_hungUp = true; }
    [[nodiscard]] bool hungUp() const override { return m_hungUp; }
    [[nodiscard]] State state() const override { return State::Prompt; }

    std::string heard;
    std::vector<std::uint8_t> said;
    TimePoint when;

  private:
    unsigned m_powerOns = 0;
    bool m_hungUp = false;
};

struct Wire {
    explicit Wire(const std::string& faults, unsigned faultyRuns = 0)
        : wire(echo, parseWireFaults(faults), faultyRuns) {
        wire.powerOn(now);
        wire.portOpened(now);
    }
    void send(const std::string& text, std::size_t chunk = 1000) {
        for (std::size_t at = 0; at < text.size(); at += chunk) {
            const std::string part = text.substr(at, chunk);
            wire.receive({reinterpret_cast<const std::uint8_t*>(part.data()), part.size()}, now);
        }
    }
    std::string back() {
        const auto bytes = wire.takeOutput();
        return {bytes.begin(), bytes.end()};
    }

    TimePoint now{};
    Echo echo;
    BadWire wire;
};

const std::string kText(5'000, 'k');

} // namespace

TEST(BadWire, EachKindActsInItsDirectionOnly) {
    using Check = bool (*)(const std::string& came);
    const std::vector<std::pair<std::string, Check>> kinds{
        {"flip",
         [](const std::string& c) {
             return c.size() == 1 && std::popcount(unsigned(c[0] ^ 'k') & 0xFFU) == 1;
         }},
        {"loss", [](const std::string& c) { return c.empty(); }},
        {"double", [](const std::string& c) { return c == "kk"; }},
        {"replace", [](const std::string& c) { return c.size() == 1 && c != "k"; }},
        {"noise", [](const std::string& c) { return c.size() >= 2 && c.size() <= 9 && c.back() == 'k'; }},
        {"delay", [](const std::string& c) { return c.empty(); }},
        {"hang-up", [](const std::string& c) { return c.empty(); }},
    };
    for (const auto& [kind, check] : kinds) {
        for (int seed = 0; seed < 20; ++seed) {
            SCOPED_TRACE(kind + " of seed " + std::to_string(seed));
            Wire toBoard(std::to_string(seed) + ",to-board-" + kind + "=1");
            toBoard.send("k");
            EXPECT_TRUE(check(toBoard.echo.heard)) << toBoard.echo.heard;
            EXPECT_EQ(toBoard.back(), toBoard.echo.heard);
            Wire toLoader(std::to_string(seed) + ",to-loader-" + kind + "=1");
            toLoader.send("k");
            EXPECT_EQ(toLoader.echo.heard, "k");
            EXPECT_TRUE(check(toLoader.back()));
            EXPECT_EQ(toLoader.wire.hungUp(), kind == "hang-up");
        }
    }
    Wire wrong("3,wrong-answer=1");
    wrong.send("5");
    EXPECT_EQ(wrong.echo.heard, "5");
    const std::string came = wrong.back();
    EXPECT_TRUE(came.size() == 1 && came != "5" && std::string("RXotEF\x06").find(came) != std::string::npos)
        << came;
}

TEST(BadWire, ADelayKeepsTheOrderAndAnnouncesItself) {
    Wire w("1,to-board-delay=1");
    w.send("abc");
    EXPECT_EQ(w.echo.heard, "");
    const auto first = w.wire.nextDeadline();
    ASSERT_TRUE(first && *first > w.now && *first <= w.now + 3s);
    w.wire.advance(*first - 1ms);
    EXPECT_EQ(w.echo.heard, "");
    w.wire.advance(*first);
    EXPECT_EQ(w.echo.heard, "a");
    EXPECT_EQ(w.echo.when, *first);
    w.wire.advance(w.now + 9s);
    EXPECT_EQ(w.echo.heard, "abc");
}

TEST(BadWire, ASilenceTakesSomeBytesAndThenEnds) {
    Wire w("5,to-board-silence=0.0005");
    w.send(std::string(50'000, 'k'));
    EXPECT_GT(w.echo.heard.size(), 20'000U);
    EXPECT_LT(w.echo.heard.size(), 49'000U);
}

TEST(BadWire, ASeedDoesTheSameHoweverTheBytesCome) {
    const auto run = [](const std::string& faults, std::size_t chunk, bool pauses) {
        Wire w(faults);
        std::string back;
        for (std::size_t at = 0; at < kText.size(); at += 500) {
            w.send(kText.substr(at, 500), chunk);
            back += pauses ? w.back() : "";
        }
        w.wire.advance(w.now + 1h);
        return w.echo.heard + "|" + back + w.back() + w.wire.summary();
    };
    const std::string faults =
        "42,flip=.01,loss=.01,double=.01,delay=.001,replace=.01,noise=.01,silence=.001";
    const std::string once = run(faults, 500, false);
    EXPECT_EQ(once, run(faults, 1, true));
    EXPECT_EQ(once, run(faults, 7, false));
    EXPECT_NE(once, run("43" + faults.substr(2), 500, false));
    // A further kind must not move the faults of the others.
    const auto flips = [](const std::string& text) {
        std::vector<std::uint64_t> at;
        Wire w(text);
        w.wire.onFault([&at](bool toBoard, std::uint64_t position, std::uint8_t /*byte*/, WireFault fault) {
            if (toBoard && fault == WireFault::Flip)
                at.push_back(position);
        });
        w.send(kText);
        return at;
    };
    EXPECT_FALSE(flips("9,flip=.01").empty());
    EXPECT_EQ(flips("9,flip=.01"), flips("9,flip=.01,double=.2"));
}

TEST(BadWire, CountsOnlyWhatALoaderCanHearAndFaultyRuns) {
    Wire w("1,to-loader-loss=1", 1);
    w.wire.portClosed(w.now);
    w.send("kk");
    EXPECT_EQ(w.back(), "");
    w.wire.portOpened(w.now);
    w.send("k");
    EXPECT_EQ(w.back(), "");
    EXPECT_EQ(w.wire.summary(),
              "faults of seed 1: to the board 3 bytes, no fault; to the loader 1 byte, 1 loss");
    w.wire.powerOn(w.now); // the second run has a good wire
    w.send("k");
    EXPECT_EQ(w.back(), "k");
}

TEST(BadWire, RejectsBadArguments) {
    for (const char* text :
         {"", "x", "1,", "1,flip", "1,flip=", "1,flip=2", "1,flip=-1", "1,flip=nan", "1,flop=0.1",
          "1,to-board-wrong-answer=1", "1,flip=.6,loss=.6", "1,flip=0.1x", "1flip=0.1"})
        EXPECT_THROW((void)parseWireFaults(text), std::invalid_argument) << text;
    const WireFaults faults = parseWireFaults("0x10,flip=0.25,to-loader-loss=0.5");
    EXPECT_EQ(faults.seed, 16U);
    EXPECT_EQ(faults.toBoard, (WireOdds{0.25}));
    EXPECT_EQ(faults.toLoader, (WireOdds{0.25, 0.5}));
}
