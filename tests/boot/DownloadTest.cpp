#include "support/Exchanges.h"

namespace {

using namespace zrktest;
using zrk::Outcome;

const QByteArray kUBootSent = "u" + hex("00 00 00 81  03 00 00 00");
const QByteArray kRootFsSent = "r" + hex("F0 FF FF 83  04 00 00 00");
const QByteArray kKernelSent = "k" + hex("04 00 00 80  01 00 00 00");

QString downloaded(const char* letter, const char* name) {
    return QStringLiteral(
               "-- Sending command .. %1 ..done!\nSending startaddress .. done!\nSending size .. done!\n"
               "Wait for acceptance from primary boot .. o ..OK!\nSending code .. done!\n"
               "Expect final 't' .. t .. found, \n---- %2 loaded. ---\n\n")
        .arg(letter, name);
}

/// A rig with all three images selected, and the primary boot listening on the open port.
struct DownloadRig : ScriptedRig {
    DownloadRig() {
        bench.fill(2, "uuu", "0x81000000");
        bench.fill(3, "rrrr", "0x83FFFFF0");
        bench.fill(4, "k", "0x80000004");
        bench.setButtons("1111");
        port.steps = {{kUBootSent, "o"}, {"uuu", "t"},       {kRootFsSent, "o"},
                      {"rrrr", "t"},     {kKernelSent, "o"}, {"k", "t"}};
        loader.port.OpenComPort();
        port.calls.clear();
    }
    void start() { loader.commands.cmdURK_Click(); }
};

TEST(Download, WhichBoxesAreTicked) {
    for (const bool terminal : {false, true}) {
        for (const std::array<int, 3>& ticked :
             std::initializer_list<std::array<int, 3>>{{1, 1, 1}, {1, 0, 1}, {0, 0, 0}}) {
            DownloadRig r;
            std::vector<Step> steps;
            QByteArray sent;
            QString text;
            if (terminal) {
                r.loader.terminal.cmdTerminal_Click();
                text = "\n--- Enabling terminal mode ---\n\n--- Switching to programmed mode ---\n";
            }
            for (std::size_t i = 0; i < 3; ++i) {
                r.loader.controls.chkExeURK[i + 2].Value = ticked[i];
                if (!ticked[i])
                    continue;
                steps.insert(steps.end(), {r.port.steps[2 * i], r.port.steps[2 * i + 1]});
                sent += r.port.steps[2 * i].when + r.port.steps[2 * i + 1].when;
                text += downloaded(std::array{"u", "r", "k"}[i],
                                   std::array{"UBoot image", "Root FS image", "Kernel image"}[i]);
            }
            if (!steps.empty())
                steps[0].action = [&] { EXPECT_EQ(r.bench.buttons(), "0001"); };
            r.port.follow(steps);
            r.start();
            EXPECT_EQ(r.bench.console(), text);
            EXPECT_EQ(r.port.written, sent);
            EXPECT_FALSE(r.port.callNames().contains("close")) << "the connection goes on";
            EXPECT_EQ(r.bench.buttons(), "1111");
            EXPECT_EQ(r.loader.operation.outcome(), Outcome::Done);
            EXPECT_FALSE(r.loader.state.OperationActive || r.loader.state.TerminalMode);
            r.loop.runFor(30s);
            EXPECT_TRUE(r.port.isOpen() && r.bench.boxes.shown.isEmpty());
        }
    }
}

TEST(Download, EachAnswerGoneWrongEndsItAll) {
    for (std::size_t step = 0; step < 6; ++step) {
        for (const Trouble trouble : kTroubles) {
            SCOPED_TRACE(testing::Message() << "step " << step << " trouble " << static_cast<int>(trouble));
            DownloadRig r;
            std::vector<Step> steps = r.port.steps;
            disturb(r, steps[step], trouble);
            r.port.follow(steps);
            r.start();
            QString end = echoOf(trouble);
            if (trouble != Trouble::HangUp)
                end += step % 2 == 0 ? " .. invalid char! Cancelled.\nSending code aborted...!\n"
                                     : "invalid char! Cancelled.\n\n";
            EXPECT_TRUE(
                r.bench.console().endsWith((step % 2 == 0 ? "primary boot .. " : "'t' .. ") + end + kAborted))
                << r.bench.console().toStdString();
            EXPECT_EQ(r.bench.console().count("-- Sending command"), static_cast<qsizetype>(step) / 2 + 1);
            EXPECT_EQ(r.bench.boxes.shown, boxesOf(trouble));
            EXPECT_EQ(r.loader.operation.outcome(), outcomeOf(trouble));
            EXPECT_EQ(r.bench.buttons(), "1001");
            r.bench.expectAtRest();
        }
    }
}

TEST(Download, RefusalAndSlotsWithoutACommand) {
    DownloadRig r;
    r.port.follow({{kUBootSent, "E"}});
    r.start();
    EXPECT_TRUE(r.bench.console().endsWith(
        "E .. Error signalled back from primary boot.\nSending code aborted...!\n" + kAborted));
    EXPECT_EQ(r.port.written, kUBootSent);
    EXPECT_EQ(r.loader.operation.outcome(), Outcome::Refused);
    for (const int slot : {-1, 5, 6})
        EXPECT_THROW((void)r.loader.commands.SendImageCommand(slot), zrk::RuntimeFailure);
}

TEST(Download, AClosedPortIsAFailure) {
    DownloadRig r;
    r.loader.port.CloseComPort();
    r.start();
    EXPECT_EQ(r.bench.boxes.shown,
              QStringList(
                  "[Error] ! Error communicating with COM1\n"
                  "or other download problem\nError: The serial port is not open. Open it and start again."));
    EXPECT_EQ(r.bench.console(), "-- Sending command .. u .." + kAborted);
    EXPECT_EQ(r.bench.buttons(), "1001");
}

} // namespace
