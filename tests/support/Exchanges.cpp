#include "support/Exchanges.h"

namespace zrktest {

void fillBringUp(Rig& bench) {
    bench.fill(0, kPrimaryCode, QStringLiteral("0x1234"));
    bench.fill(1, kSecondaryCode, QStringLiteral("0x80008004"));
}

std::vector<Step> bringUpSteps() {
    return {{"", "5"},
            {"A", "5"},
            {"U3", "R"},
            {kPrimaryHeader + kPrimaryCode, "X"},
            {"p" + kSecondaryHeader, "o"},
            {kSecondaryCode, "t"}};
}

QStringList bringUpTexts() {
    return {"Waiting for BootID .. ",
            "5 .. found!\nSending 'A' .. done!\nExpect 2-nd BootId .. ",
            "5 .. found!\nSending 'U','3'.. done!\nExpect 'R' .. ",
            ("R .. found!\nSending startaddress .. done!\nSending size .. done!\nSending code .. done!\n"
             "\n--- Loading Secondary executable ---\nWait for 'X' .. "),
            ("X .. found!\n-- Sending command .. p ..done!\nSending startaddress .. done!\n"
             "Sending size .. done!\nWait for acceptance from primary boot .. "),
            "o ..OK!\nSending code .. done!\nExpect final 't' .. ",
            "t .. found, \n---- Secondary Executable loaded. ---\n\n"};
}

void disturb(ScriptedRig& b, Step& step, Trouble trouble, qsizetype position) {
    if (trouble == Trouble::Wrong) {
        step.answer[position] = '?';
        return;
    }
    step.answer.truncate(position);
    // The user reads the message for longer than a reply may take.
    if (trouble == Trouble::HangUp)
        b.bench.boxes.user = [&b](int) {
            b.loop.runFor(12s);
            return zrk::Answer::Ok;
        };
    // A moment later, when the loader has read all bytes.
    step.action = [&b, trouble] {
        b.loop.after(1ms, [&b, trouble] {
            if (trouble == Trouble::Cancel)
                b.loader.portControl.cmdCancel_Click();
            else if (trouble == Trouble::CloseWindow)
                EXPECT_EQ(b.loader.portControl.Form_Unload(), 1);
            else if (trouble == Trouble::HangUp)
                b.port.hangUp();
        });
    };
}

QString echoOf(Trouble trouble) {
    return trouble == Trouble::Wrong ? "?" : trouble == Trouble::HangUp ? "" : "<0>";
}

QStringList boxesOf(Trouble trouble) {
    if (trouble == Trouble::Silent)
        return {"[TimeOut] ! No valid serial response received within  5 second\nAborting operation"};
    if (trouble == Trouble::HangUp)
        return {
            "[Error] ! Error communicating with COM1\nor other download problem\nError: The device is gone."};
    return {};
}

zrk::Outcome outcomeOf(Trouble trouble) {
    switch (trouble) {
    case Trouble::Wrong:
        return zrk::Outcome::WrongAnswer;
    case Trouble::Silent:
        return zrk::Outcome::TimedOut;
    case Trouble::HangUp:
        return zrk::Outcome::PortLost;
    default:
        return zrk::Outcome::Cancelled;
    }
}

} // namespace zrktest
