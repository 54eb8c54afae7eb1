#include "loader/TransferRate.h"
#include "platform/SecondsText.h"
#include "serial/BoardHint.h"
#include "support/Exchanges.h"

namespace {

using namespace zrktest;

TEST(Activity, TransferRateInWords) {
    EXPECT_EQ(zrk::lineTimeText(126'976), "about 12 s");
    EXPECT_EQ(zrk::lineTimeText(11'520), "about 1 s");
    EXPECT_EQ(zrk::lineTimeText(67'108'864), "about 1 h 37 min");
    EXPECT_EQ(zrk::durationText(125s), "2 min 5 s");

    zrk::TransferRate rate;
    TimePoint now{};
    rate.begin(100'000, now);
    EXPECT_EQ(rate.text(now), "starting");
    rate.update(15'000, now += 500ms); // into the driver's buffer, at no line's rate
    EXPECT_EQ(rate.text(now), "starting");
    rate.update(20'000, now += 500ms);
    rate.update(30'000, now += 1s);
    EXPECT_EQ(rate.text(now), "10.0 KB/s, 7 s left");
    EXPECT_EQ(rate.text(now += 3s), "stalled for 3 s");
    rate.update(40'000, now);
    EXPECT_EQ(rate.text(now), "5.0 KB/s, 12 s left");
    rate.update(70'000, now += 6s); // what was long ago no longer counts
    EXPECT_EQ(rate.text(now), "5.0 KB/s, 6 s left");
    rate.update(100'000, now += 1s);
    EXPECT_EQ(rate.text(now), "all handed over");

    rate.begin(100'000, now);
    rate.update(1'000, now += 1s);
    rate.update(40'000, now += 1s);
    EXPECT_EQ(rate.text(now), "11.5 KB/s, 6 s left") << "what the line carries, not what a driver takes";
    EXPECT_EQ(rate.seriesText({2, 3, 50'000}, now), "11.5 KB/s, 6 s left, 10 s for all 3");
    rate.limitTo(0);
    EXPECT_EQ(rate.text(now), "39.0 KB/s, 2 s left");
}

TEST(Activity, HintsFromWhatTheBoardSent) {
    using zrk::Outcome;
    struct Row {
        Outcome outcome;
        QByteArray received;
        const char* hint; // a part of it; "" for none
    };
    for (const Row& row : std::initializer_list<Row>{
             {Outcome::TimedOut, "", "Nothing was received from COM1 (/dev/ttyUSB0)"},
             {Outcome::LimitReached, "U-Boot 2010.06 (Jun 30 2010)\r\n", "service jumper"},
             {Outcome::WrongAnswer, "\r\n\r\nU-Boot 1.1.5 ", "service jumper"},
             {Outcome::WrongAnswer, "55RXotototX!", ""},
             {Outcome::WrongAnswer, "55R5", "has restarted"},
             {Outcome::WrongAnswer, hex("80 C0 E0 90 80 F0"),
              "the bits 0x0f are 0 in all of them; the bits 0x80 are 1"},
             {Outcome::WrongAnswer, "55RXo" + hex("00 80 FF 90 80 F0 F1"), ""},
             {Outcome::WrongAnswer, "5r", ""},
             {Outcome::Cancelled, "", ""},
             {Outcome::PortLost, "", ""}}) {
        const QString hint = zrk::boardHint(row.outcome, row.received, "COM1 (/dev/ttyUSB0)");
        EXPECT_TRUE(*row.hint ? hint.contains(row.hint) : hint.isEmpty()) << hint.toStdString();
    }
}

TEST(Activity, TheFirstPanelShowsTheActivity) {
    ScriptedRig b;
    const auto panel = [&b] {
        b.loop.runFor(250ms);
        return b.loader.controls.staStatus.FirstPanel.value();
    };
    EXPECT_EQ(panel(), "COM1 (/dev/line1): closed. Next: choose a primary boot.");
    b.loader.controls.cmbComPort.ListIndex = 1;
    EXPECT_EQ(panel(), "COM2 (/dev/line2): closed. Next: choose a primary boot.");
    b.loader.port.OpenComPort();
    EXPECT_EQ(panel(), "COM2 (/dev/line2): open. Next: choose a primary boot.");
    b.loader.terminal.cmdTerminal_Click();
    EXPECT_EQ(panel(), "COM2 (/dev/line2): open, terminal");

    fillBringUp(b.bench);
    b.bench.fill(1, QByteArray(50'000, 'x'), "0x80008004");
    b.port.paced = true;
    b.port.steps = bringUpSteps();
    b.port.steps[1].delay = 1s;
    b.port.steps[4].when = "p" + hex("04 80 00 80 50 C3 00 00");
    b.port.steps[5].when = QByteArray(50'000, 'x');
    QStringList seen;
    for (const auto& when : {500ms, 3000ms})
        b.loop.after(when, [&] { seen += b.loader.controls.staStatus.FirstPanel; });
    b.loader.bringUp.cmdStartPrimary_Click();
    ASSERT_EQ(seen.size(), 2);
    EXPECT_EQ(seen[0], "Talking to the board");
    EXPECT_EQ(panel(), "Loaded: 50,005 bytes in 4 s, confirmed.");
    b.loader.state.Remark = {};
    EXPECT_EQ(panel(), "COM2 (/dev/line2): open. Next: \"Download U/R/K images\" or \"Start Secondary "
                       "Executable\".");
    EXPECT_TRUE(seen[1].startsWith("Secondary Executable (SDRAM): 1") && seen[1].endsWith(" s left"))
        << seen[1].toStdString();
}

/// The outcome stays in the first panel until the next operation.
TEST(Activity, TheFirstPanelShowsTheOutcome) {
    struct Row {
        const char* what = "";
        std::function<void(ScriptedRig&)> change;
        const char* told = "";
        zrk::RemarkSeverity severity = zrk::RemarkSeverity::Failed;
    };
    const auto cancel = [](ScriptedRig& b) { b.loader.portControl.cmdCancel_Click(); };
    for (const Row& row : std::initializer_list<Row>{
             {"all is well", [](auto&) {}, "Loaded: 12 bytes in 0 s, confirmed.", zrk::RemarkSeverity::Done},
             {"silence after 'A'", [](auto& b) { b.port.steps[1].answer = ""; },
              "No answer to 'A' within 5 s. Expected '5' (0x35)."},
             {"silence after the header", [](auto& b) { b.port.steps[4].answer = ""; },
              "No answer to the address and size of Secondary Executable (SDRAM) within 5 s. Expected 'o' "
              "(0x6F)."},
             {"refused", [](auto& b) { b.port.steps[4].answer = "E"; },
              "The board refused the address and size of Secondary Executable (SDRAM): expected 'o', got "
              "'E'."},
             {"wrong answer", [](auto& b) { b.port.steps[2].answer = "Q"; },
              "Expected 'R' (0x52), got 'Q' (0x51)."},
             {"a program runs", [](auto& b) { b.port.steps[0].answer = "U-Boot 1.1.5 (Jun 30)"; },
              "Expected '5' (0x35), got 0x20. The board runs a program that prints text instead of "
              "waiting in its boot ROM: install the service jumper, then cycle the power."},
             {"cancelled", [&cancel](auto& b) { b.port.steps[1].action = [&] { cancel(b); }; }, "Cancelled.",
              zrk::RemarkSeverity::Warning},
             {"no such port", [](auto& b) { b.port.failsToOpen = true; }, "The device is not there."},
         }) {
        SCOPED_TRACE(row.what);
        ScriptedRig b;
        fillBringUp(b.bench);
        b.port.steps = bringUpSteps();
        row.change(b);
        b.loader.bringUp.cmdStartPrimary_Click();
        b.loop.runFor(250ms);
        const QString panel = b.loader.controls.staStatus.FirstPanel;
        EXPECT_TRUE(panel.startsWith(row.told)) << panel.toStdString();
        EXPECT_EQ(b.loader.controls.staStatus.FirstPanelSeverity, row.severity);
        const QString counters = b.loader.controls.staStatus.SecondPanel;
        const double progress = b.loader.controls.pgbDownload.Value;
        b.loader.operation.begin();
        EXPECT_EQ(b.loader.controls.staStatus.SecondPanel.value(), counters) << "until the next header";
        EXPECT_DOUBLE_EQ(b.loader.controls.pgbDownload.Value, progress);
        b.loader.operation.finish();
        b.loop.runFor(250ms);
        EXPECT_NE(b.loader.controls.staStatus.FirstPanel.value(), panel);
    }
}

} // namespace
