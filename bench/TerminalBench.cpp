#include "TerminalBench.h"

#include "FigureTable.h"
#include "Line.h"
#include "QuietLoader.h"
#include "Samples.h"
#include "board/program/PseudoTerminal.h"

#include <poll.h>
#include <stdexcept>
#include <thread>

namespace zrkbench {
namespace {

using Clock = std::chrono::steady_clock;

constexpr double kTick = 0.2; ///< seconds between two looks at what has been received
constexpr qsizetype kChunk = static_cast<qsizetype>(kLineRate * kTick);
constexpr qsizetype kMegabyte = 1'000'000;

/// Makes so much of the output of a starting system.
QByteArray bootLog(qsizetype size) {
    const QByteArray line = "[    1.234567] usb 1-1: new full speed device, address 2, hub 0\r\n";
    return line.repeated(size / line.size() + 1).left(size);
}

double secondsSince(Clock::time_point begin) {
    return std::chrono::duration<double>(Clock::now() - begin).count();
}

/// Writes as fast as the reader reads.
void say(const zrkboard::PseudoTerminal& terminal, const QByteArray& text) {
    for (qsizetype done = 0; done < text.size();) {
        pollfd ready{terminal.masterFd(), POLLOUT, 0};
        if (::poll(&ready, 1, 10'000) != 1)
            return;
        const ssize_t count = ::write(terminal.masterFd(), text.constData() + done,
                                      static_cast<std::size_t>(text.size() - done));
        done += std::max<ssize_t>(count, 0);
    }
}

} // namespace

void benchChunks(QuietLoader& quiet, const std::string& where, const std::function<void()>& shown) {
    constexpr int kTimes = 100;
    zrk::Loader& loader = quiet.loader();
    const QString chunk = QString::fromLatin1(bootLog(kChunk));
    for (const qsizetype megabytes : {0, 1, 10}) {
        while (loader.controls.txtStatus.text().size() < megabytes * kMegabyte)
            loader.terminal.ShowReceived(chunk);
        shown();
        Samples samples;
        for (int i = 0; i < kTimes; ++i) {
            const auto begin = Clock::now();
            loader.terminal.ShowReceived(chunk);
            shown();
            samples.add(secondsSince(begin));
        }
        FigureTable::limited("terminal, " + where + ", cost of " + std::to_string(kChunk) + " bytes with " +
                                 std::to_string(megabytes) + " MB before: median / worst",
                             timeText(samples.median()) + " / " + timeText(samples.worst()),
                             timeText(kTick) + " (the line's time for them)", samples.worst() / kTick);
    }
}

void benchTerminalSpeed(const std::string& where,
                        const std::function<std::shared_ptr<void>(QuietLoader& quiet)>& makeViewer) {
    const zrkboard::PseudoTerminal terminal;
    QuietLoader quiet(QString::fromStdString(terminal.devicePath()), 0);
    const auto viewer = makeViewer(quiet);
    zrk::Loader& loader = quiet.loader();
    loader.terminal.cmdTerminal_Click();
    const QString& text = loader.controls.txtStatus.text();
    const QByteArray said = bootLog(8 * kMegabyte);
    const qsizetype end = text.size() + said.size();
    const auto begin = Clock::now();
    const std::jthread board([&terminal, &said] { say(terminal, said); });
    while (text.size() < end) {
        if (secondsSince(begin) > 120.0)
            throw std::runtime_error("the terminal does not show what was sent");
        quiet.wait();
    }
    const double rate = static_cast<double>(said.size()) / secondsSince(begin);
    FigureTable::compared("terminal, " + where + ", speed without a line", rateText(rate),
                          rateText(kLineRate) + " (the line)", rate / kLineRate);
}

} // namespace zrkbench
