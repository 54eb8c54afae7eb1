#include "BenchLoader.h"
#include "Benches.h"
#include "FigureTable.h"
#include "Line.h"
#include "board/launcher/BoardProcess.h"
#include "board/launcher/SerialServer.h"

#include <algorithm>

namespace zrkbench {
namespace {

constexpr qsizetype kImageSize = 126976;
constexpr qsizetype kDataFrameBytes = 9; ///< around the flash image

/// Adds a transfer's row to the table; returns how long the answer took.
double addTransfer(const std::string& name, const TransferTimes& times, qsizetype bytesOnLine) {
    const double rate = static_cast<double>(bytesOnLine) / times.lineSeconds();
    FigureTable::limited(name, rateText(rate), rateText(kLineRate), rate / kLineRate);
    return times.answerSeconds();
}

void benchPlace(const std::string& place, const QString& device, const QString& flashDevice) {
    double answer = 0.0;
    {
        BenchLoader loader(device, {kImageSize, kImageSize, 1});
        answer = addTransfer("line use, bring-up, " + place, loader.bringUp(), kImageSize);
        answer = std::max(answer, addTransfer("line use, download, " + place, loader.download(), kImageSize));
    }
    BenchLoader loader(flashDevice, {1, 1, kImageSize});
    answer = std::max(answer, addTransfer("line use, flash, " + place, loader.programFlash(),
                                          kImageSize + kDataFrameBytes));
    constexpr double kReplyLimit = 5.0;
    FigureTable::limited("longest wait for the answer to an image, " + place, timeText(answer),
                         timeText(kReplyLimit) + " (reply time-out)", answer / kReplyLimit);
}

} // namespace

void benchLine() {
    {
        const zrkboard::BoardProcess board({});
        const zrkboard::BoardProcess flashed({});
        benchPlace("near", QString::fromStdString(board.device()), QString::fromStdString(flashed.device()));
    }
    for (const bool raw : {true, false}) {
        const zrkboard::BoardProcess board({});
        const zrkboard::BoardProcess flashed({});
        const zrkboard::SerialServer server(QString::fromStdString(board.device()));
        const zrkboard::SerialServer flashServer(QString::fromStdString(flashed.device()));
        if (raw)
            benchPlace("serial server (tcp)", server.raw(), flashServer.raw());
        else
            benchPlace("serial server (rfc2217)", server.rfc2217(), flashServer.rfc2217());
    }
}

} // namespace zrkbench
