#include "gui/WindowRig.h"

#include <set>

namespace {

using namespace zrktest;

class Window : public WindowTest {};

TEST_F(Window, ShowsWhatTheControlsHold) {
    zrk::Controls& c = loader.controls;
    fill(3);
    c.cmdTerminal.Caption = "Disable Terminal mode";
    c.lblState.Caption = "Open...";
    c.staStatus.FirstPanel = "first";
    c.staStatus.SecondPanel = "bytes sent 1200 / 4096";
    c.pgbDownload.Value = 29.296875;
    c.cmbComPort.ListIndex = 5;
    c.cmbComPort.Enabled = false;
    c.lblCodeSize[5].Caption = "0x1F000";
    loader.state.Sent[3] = zrk::SentImage{0xC0FFEE, 5};
    const auto* mark = find<QLabel>("lblFileChanged_3");
    EXPECT_FALSE(mark->isVisible()) << "nothing to tell yet";
    c.lblFileChanged[3].Caption = "It has changed.";
    EXPECT_FALSE(mark->pixmap().isNull());
    EXPECT_TRUE(mark->isVisible());
    const std::tuple<const char*, const char*, QString> properties[] = {
        {"lblHeader", "text", "ZRK6957 loader, V0.7 (rev 34)"},
        {"cmdCancel", "text", "&Cancel && Close port"},
        {"mnuFile", "title", " &File"},
        {"mnuAbout", "text", " &About"},
        {"mnuExecScript", "enabled", "false"},
        {"txtFilNam_3", "text", "slot3.bin"},
        {"txtFilNam_3", "toolTip", "Path: " + folder.path() + "/"},
        {"chkExeURK_3", "checked", "true"},
        {"lblCodeSize_3", "text", "0x5"},
        {"lblCodeSize_3", "toolTip", "5 bytes, about 1 s on the line\nSent: 5 bytes, CRC-32 00C0FFEE"},
        {"lblFileChanged_3", "toolTip", "It has changed."},
        {"cmdTerminal", "text", "Disable Terminal mode"},
        {"lblState", "text", "Open..."},
        {"staStatus_0", "text", "first"},
        {"staStatus_1", "text", "bytes sent 1200 / 4096"},
        {"pgbDownload", "value", "29"},
        {"pgbDownload", "maximum", "100"},
        {"cmbComPort", "currentText", "COM6:"},
        {"cmbComPort", "enabled", "false"},
        {"lblFlashTime", "text", QLocale().toString(126976) + " bytes, about 12 s on the line"},
        // A label's name is all that a screen reader reads of it.
        {"lblState", "accessibleName", "Port state: Open..."},
        {"lblCodeSize_5", "accessibleName", "Flash image: size 0x1F000"},
        {"txtStartAddress_2", "accessibleName", "UBoot image: address"},
    };
    for (const auto& [name, property, value] : properties)
        EXPECT_EQ(shown(name, property), value) << name;
    EXPECT_EQ(window.windowTitle(), "ZRK6924 Loader");

    // What a board or a file's name says is no markup.
    c.txtFilNam[4].ToolTipText = "Path: /<b>x</b>/";
    EXPECT_TRUE(shown("txtFilNam_4", "toolTip").contains("&lt;b&gt;x"))
        << shown("txtFilNam_4", "toolTip").toStdString();
    EXPECT_EQ(find<QLabel>("staStatus_0")->textFormat(), Qt::PlainText);

    c.lvwAdrs.add({"3", "0x00000004", "0x5"});
    const auto* list = find<QTreeWidget>("lvwAdrs");
    ASSERT_EQ(list->topLevelItemCount(), 1);
    QStringList texts;
    for (const QTreeWidgetItem* row : {list->headerItem(), list->topLevelItem(0)})
        texts += row->text(0) + ' ' + row->text(1) + ' ' + row->text(2);
    EXPECT_EQ(texts, QStringList({"index start size", "3 0x00000004 0x5"}));
    EXPECT_EQ(list->topLevelItem(0)->toolTip(0), "Root FS image");
}

TEST_F(Window, GreysWhatWouldStartOrStallAnOperationOnTopOfTheControlsOwnState) {
    const QStringList greyed{"cmdPrgFlash", "cmdStartPrimary", "cmdStartSecondary", "cmdURK",
                             "cmdTerminal", "cmdValidateAdrs", "cmdBrowse_0",       "cmdBrowse_6",
                             "mnuLoadIni",  "mnuWriteIni",     "mnuExecScript",     "mnuAbout",
                             "mnuOpenIni",  "cmdSaveConsole"};
    const QStringList live{"cmdCancel",         "mnuExit",    "chkExeURK_0", "txtFilNam_0",
                           "txtStartAddress_0", "cmbComPort", "chkErase"};
    zrk::Controls& c = loader.controls;
    for (auto* button : {&c.cmdStartPrimary, &c.cmdStartSecondary, &c.cmdURK})
        button->Enabled = true;
    c.mnuExecScript.Enabled = true;
    for (const bool active : {false, true, false}) {
        loader.state.OperationActive = active;
        for (const QString& name : greyed) {
            EXPECT_EQ(shown(name, "enabled"), active ? "false" : "true") << name.toStdString();
            EXPECT_EQ(shown(name, "toolTip").contains("An operation is running"), active)
                << name.toStdString();
        }
        for (const QString& name : live)
            EXPECT_EQ(shown(name, "enabled"), "true") << name.toStdString();
    }
    loader.state.OperationActive = true;
    c.cmdURK.Enabled = false;
    // A wait without a limit shows its seconds and leaves the bar alone.
    c.pgbDownload.Value = 29.3;
    loader.state.WaitingFor = "The board erases the flash";
    loader.state.WaitingSince = loop.now();
    loop.runFor(500ms);
    EXPECT_EQ(shown("pgbDownload", "maximum"), "100");
    EXPECT_EQ(shown("pgbDownload", "value"), "29");
    EXPECT_EQ(shown("staStatus_0"), "The board erases the flash: 0 s");
    loader.state.WaitingFor.clear();
    loader.state.OperationActive = false;
    EXPECT_EQ(shown("cmdURK", "enabled"), "false");
    EXPECT_TRUE(shown("cmdURK", "toolTip").startsWith("The primary boot must run first"));
}

TEST_F(Window, EveryControlHasANameForAScreenReader) {
    std::set<QString> names;
    for (const QWidget* widget : window.findChildren<QWidget*>()) {
        if (widget->focusPolicy() == Qt::NoFocus || widget->window() != &window)
            continue;
        const auto* button = qobject_cast<const QAbstractButton*>(widget);
        const QString name = widget->accessibleName().isEmpty() && button != nullptr
                                 ? button->text()
                                 : widget->accessibleName();
        EXPECT_FALSE(name.isEmpty()) << widget->objectName().toStdString() << " of "
                                     << widget->metaObject()->className();
        EXPECT_TRUE(names.insert(name).second) << name.toStdString() << " twice";
    }
}

TEST_F(Window, WhatTheStatusBarSaysOfTheLastActionLastsUntilTheNextOrAnInput) {
    const std::function<void()> inputs[] = {
        [this] { QTest::keyClick(find("txtStartAddress_2"), Qt::Key_1); },
        [this] { click("chkExeURK_2"); },
        [this] { QTest::keyClick(find("cmbComPort"), Qt::Key_Down); },
    };
    fill(2);
    loader.controls.txtStartAddress[2].Text = "0x80100000";
    for (const auto& input : inputs) {
        click("cmdValidateAdrs");
        loop.runFor(300ms);
        EXPECT_TRUE(shown("staStatus_0").startsWith("The addresses are valid"));
        input();
        loop.runFor(300ms);
        EXPECT_TRUE(shown("staStatus_0").startsWith("COM")) << shown("staStatus_0").toStdString();
        loader.controls.txtStartAddress[2].Text = "0x80100000";
    }
}

} // namespace
