#include "fuzz/LoaderUnderFuzz.h"

#include <QStringDecoder>

// Input: a counted piece of what the board sends at the start, one of its answer to a carriage return, a byte
// for the time of the user's cancel, then the script.

namespace {

using namespace zrkfuzz;
using namespace std::chrono_literals;

constexpr auto kWaitLimit = 2s;

QList<QByteArray> linesOf(QByteArray script) {
    script.replace("\r\n", "\n").replace('\r', '\n');
    if (script.isEmpty())
        return {};
    if (script.endsWith('\n'))
        script.chop(1);
    return script.split('\n');
}

/// Returns what the lines of a script of one-byte characters send.
QByteArray sentBy(const QList<QByteArray>& lines) {
    QByteArray sent;
    for (const QByteArray& line : lines) {
        if (line.startsWith('>'))
            sent += line.mid(1).replace("/n", "\r");
    }
    return sent;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Input input(data, size);
    LoaderUnderFuzz under;
    zrk::Loader& loader = under.loader;
    under.port.oneByOne = (input.byte() & 1U) != 0;
    under.port.steps = {{"", input.counted()}};
    const QByteArray answer = input.counted();
    for (int i = 0; i < 20; ++i)
        under.port.steps.push_back({"\r", answer});
    const auto cancelAt = input.byte() * 100ms + 60s * (input.byte() % 2);
    const QByteArray script = input.rest();
    const QString path = writeFile("fuzz.scr", script);
    loader.terminal.cmdTerminal_Click();
    require(under.port.isOpen(), "the terminal opens the port");
    under.carryOut([&] { loader.script.runScript(path, kWaitLimit); }, cancelAt);
    require(loader.state.AwaitedText.isEmpty(), "no wait is left");
    require(loader.controls.mnuExecScript.Enabled, "the next script can be run");
    require(loader.controls.staStatus.SecondPanel.value().endsWith(" script lines executed."),
            "the lines are counted");
    if (QStringConverter::encodingForData(script))
        return 0;
    const QByteArray meant = sentBy(linesOf(script));
    const bool whole = loader.operation.outcome() == zrk::Outcome::Done;
    require(whole ? under.port.written == meant : meant.startsWith(under.port.written),
            "what is sent is what the script says");
    return 0;
}
