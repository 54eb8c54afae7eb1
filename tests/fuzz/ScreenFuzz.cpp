#include "app/terminal/TerminalScreen.h"
#include "fuzz/Fuzz.h"

#include <QStringList>

// Input: a byte of choice, then what a board sends.

namespace {

using namespace zrkfuzz;
using zrk::TerminalScreen;

QStringList linesOf(const TerminalScreen& screen) {
    QStringList all;
    for (qsizetype number = screen.firstLine(); number < screen.endLine(); ++number) {
        const zrk::ScreenLine line = screen.line(number);
        require(line.size() <= std::size_t(screen.size().columns), "a line is no longer than the grid");
        all += zrk::textOf(line, 0, screen.size().columns);
    }
    return all;
}

void checkCursor(const TerminalScreen& screen) {
    const zrk::ScreenCursor& cursor = screen.cursor();
    require(cursor.row >= 0 && cursor.row < screen.size().rows && cursor.column >= 0 &&
                cursor.column < screen.size().columns,
            "the cursor is on the screen");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Input input(data, size);
    const unsigned choice = input.byte();
    const QByteArray bytes = input.rest();
    TerminalScreen whole([](const QByteArray&) {});
    whole.feed(bytes, TerminalScreen::Answers::Send);
    checkCursor(whole);
    TerminalScreen cut([](const QByteArray&) {});
    for (const QByteArray& piece : piecesOf(bytes, choice))
        cut.feed(piece, TerminalScreen::Answers::Send);
    require(linesOf(cut) == linesOf(whole), "pieces show what the whole does");
    int rows = 24;
    for (const QByteArray& piece : piecesOf(bytes, choice)) {
        rows = 24 + (rows * 7 + static_cast<int>(piece.size())) % 40;
        cut.resize({rows, 80 + rows % 30});
        cut.feed(piece, TerminalScreen::Answers::Drop);
        checkCursor(cut);
    }
    require(!linesOf(cut).isEmpty(), "a screen has lines");
    return 0;
}
