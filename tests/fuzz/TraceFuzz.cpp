#include "board/Replay.h"
#include "fuzz/Fuzz.h"

#include <sstream>
#include <stdexcept>
#include <string_view>

// Input: a trace.

namespace {

using namespace zrkfuzz;
using zrkboard::TraceLine;
using Bytes = std::vector<std::uint8_t>;

struct Session {
    Bytes sent;
    Bytes answered;
    bool closed = false;
};

std::vector<Session> sessionsOf(const std::vector<TraceLine>& lines) {
    std::vector<Session> sessions;
    for (const TraceLine& line : lines) {
        if (line.kind == TraceLine::Kind::Opened)
            sessions.emplace_back();
        Session& session = sessions.back();
        if (line.kind == TraceLine::Kind::ToBoard)
            session.sent.insert(session.sent.end(), line.bytes.begin(), line.bytes.end());
        else if (line.kind == TraceLine::Kind::FromBoard)
            session.answered.insert(session.answered.end(), line.bytes.begin(), line.bytes.end());
        session.closed = line.kind == TraceLine::Kind::Closed;
    }
    return sessions;
}

/// Checks that a loader that repeats the trace gets its answers.
void replay(const std::vector<TraceLine>& lines, std::uint32_t lineRate) {
    constexpr int kMostEvents = 10'000;
    bool lost = false;
    for (const TraceLine& line : lines)
        lost = lost || line.kind == TraceLine::Kind::Lost;
    zrkboard::Replay board(lines, lineRate, [](const std::string&) {});
    zrkboard::TimePoint now{};
    board.powerOn(now);
    for (const Session& session : sessionsOf(lines)) {
        board.portOpened(now);
        board.receive(session.sent, now);
        Bytes got = board.takeOutput();
        for (int i = 0; i < kMostEvents && !board.hungUp(); ++i) {
            const auto next = board.nextDeadline();
            if (!next)
                break;
            require(*next >= now, "time does not run backwards");
            now = *next;
            board.advance(now);
            const Bytes more = board.takeOutput();
            got.insert(got.end(), more.begin(), more.end());
        }
        require(lost || got == session.answered, "the board says what it said");
        board.portClosed(now);
        if (board.hungUp())
            board.powerOn(now);
    }
    require(lost || board.difference().empty(), "nothing differs",
            QString::fromStdString(board.difference()));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string text(reinterpret_cast<const char*>(data), size);
    std::istringstream stream(text);
    std::vector<TraceLine> lines;
    try {
        lines = zrkboard::readTrace(stream);
    } catch (const std::invalid_argument& error) {
        require(std::string_view(error.what()).starts_with("line "), "a damaged trace is named by line");
        return 0;
    }
    require(!lines.empty(), "a trace has lines");
    replay(lines, 0);
    replay(lines, 11'520);
    return 0;
}
