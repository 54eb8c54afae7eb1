#include "support/Rig.h"

namespace {

using namespace zrktest;
using zrk::Outcome;

class Watching : public ScriptedTest {
  protected:
    /// What comes, and when, after the watch has begun.
    struct Piece {
        std::chrono::milliseconds at;
        const char* bytes;
    };

    /// When the next board is found; the watch is cancelled after a minute.
    std::chrono::milliseconds foundAfter(const std::vector<Piece>& pieces, bool old) {
        remarks = 0;
        loader.listener.openPort({});
        for (const Piece& piece : pieces)
            loop.after(piece.at, [this, bytes = QByteArray(piece.bytes)] { port.receive(bytes); });
        loop.after(60s, [this] { loader.portControl.cmdCancel_Click(); });
        const auto begin = loop.elapsed();
        loader.watch.awaitBoard(old, [this] { ++remarks; });
        const auto found = loop.elapsed() - begin;
        loop.runFor(61s);
        return std::chrono::duration_cast<std::chrono::milliseconds>(found);
    }

    int remarks = 0;
};

TEST_F(Watching, FindsBootIdsThatStandAlone) {
    const struct {
        const char* what;
        std::vector<Piece> pieces;
        bool old;
        std::chrono::milliseconds earliest;
        Outcome outcome;
        int remarks;
    } watches[] = {
        {"a BootID", {{3s, "5"}}, false, 3200ms, Outcome::Done, 0},
        {"noise first", {{3s, "\xFE\x80"}, {3500ms, "5"}}, false, 3700ms, Outcome::Done, 0},
        {"a program with fives",
         {{1s, "up 5"}, {2s, "5 "}, {3s, "1"}, {3050ms, "5"}},
         false,
         60s,
         Outcome::Cancelled,
         0},
        {"one that announces often",
         {{3s, "5"}, {3100ms, "5"}, {3200ms, "5"}, {3300ms, "5"}},
         false,
         3200ms,
         Outcome::Done,
         0},
        {"the old board",
         {{500ms, "5"}, {1500ms, "5"}, {2500ms, "5"}, {5s, "5"}},
         true,
         5200ms,
         Outcome::Done,
         0},
        {"the old board, for long",
         {{1s, "5"},
          {2s, "5"},
          {3s, "5"},
          {4s, "5"},
          {5s, "5"},
          {6s, "5"},
          {7s, "5"},
          {8s, "5"},
          {9s, "5"},
          {10s, "5"},
          {11s, "5"},
          {12s, "5"}},
         true,
         60s,
         Outcome::Cancelled,
         1},
    };
    for (const auto& watch : watches) {
        SCOPED_TRACE(watch.what);
        const auto found = foundAfter(watch.pieces, watch.old);
        EXPECT_EQ(loader.operation.outcome(), watch.outcome);
        EXPECT_GE(found, watch.earliest);
        EXPECT_LE(found, watch.earliest + 100ms);
        EXPECT_EQ(remarks, watch.remarks);
    }
}

TEST_F(Watching, OpensThePortAgainThatGoesWithABoard) {
    loader.listener.openPort({});
    port.receive("5"); // of the old board
    loop.after(1s, [this] { port.hangUp(); });
    loop.after(2s, [this] { port.receive("5"); });
    loop.after(60s, [this] { loader.portControl.cmdCancel_Click(); });
    loader.watch.awaitBoard(true, [] {});
    EXPECT_EQ(loader.operation.outcome(), Outcome::Done);
    EXPECT_EQ(port.callNames().filter("open").size(), 2);
}

} // namespace
