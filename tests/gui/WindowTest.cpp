#include "gui/WindowRig.h"

#include <set>

namespace {

using namespace zrktest;

class Window : public WindowTest {};

TEST_F(Window, CarriesTheDesignedTextsInTheDesignedPlaces) {
    struct Design {
        const char* frame = "";
        const char* title = "";
        QStringList texts; ///< "name: text" of what stands in the frame
    };
    const Design frames[] = {
        {"fraFlashLdr",
         "Program Flash",
         {"chkExeURK_6: pg_sibl", "lblStart_6: IRAM Address", "txtStartAddress_6: 0x0",
          "chkExeURK_5: &Flash image", "lblStart_5: Flash Address", "txtStartAddress_5: 0x00000000",
          "cmdPrgFlash: Program Flash", "chkErase: Full Erase (be patient!)"}},
        {"fraExecutables",
         "Executables",
         {"chkExeURK_0: &Primary Boot (IRAM)", "lblStart_0: IRAM Address", "txtStartAddress_0: 0x0",
          "chkExeURK_1: &Secondary Executable (SDRAM)", "lblStart_1: SDRAM Address",
          "txtStartAddress_1: 0x80000000"}},
        {"fraImages",
         "Uboot/RootFS/Kernel Images",
         {"chkExeURK_2: &UBoot image", "chkExeURK_3: &RootFS image", "chkExeURK_4: &Kernel image",
          "lblStart_2: SDRAM Address", "lblStart_3: SDRAM Address", "lblStart_4: SDRAM Address",
          "txtStartAddress_2: 0x80000000", "txtStartAddress_3: 0x80000000", "txtStartAddress_4: 0x80000000"}},
        {"fraComPort",
         "Comport control",
         {"cmdTerminal: Enable &Terminal mode", "cmdCancel: &Cancel && Close port", "lblState: Closed..."}},
        {"fraControl", "Status / Terminal output", {"txtStatus: "}},
        {"frmLoader",
         "ZRK6924 Loader",
         {"lblHeader: ZRK6957 loader, V0.7 (rev 34)", "cmdStartPrimary: Load bin's / Start primary",
          "cmdURK: Download U/R/K images", "cmdStartSecondary: Start Secondary Executable",
          "cmdValidateAdrs: Validate Addresses", "cmdOutput: Debug Send String:", "txtOut: 4R"}},
    };
    for (const auto& [name, title, texts] : frames) {
        const QWidget* frame = name == window.objectName() ? &window : find(name);
        EXPECT_EQ(frame == &window ? window.windowTitle() : shown(name, "title"), title);
        for (const QString& text : texts) {
            const QString control = text.section(": ", 0, 0);
            const char* property = control == "txtStatus" ? "plainText" : "text";
            EXPECT_EQ(control + ": " + shown(control, property), text);
            EXPECT_TRUE(frame->isAncestorOf(find(control))) << text.toStdString();
        }
    }
    for (int slot = 0; slot < 7; ++slot) {
        const auto of = [slot](const char* name) { return QStringLiteral("%1_%2").arg(name).arg(slot); };
        EXPECT_EQ(shown(of("cmdBrowse")) + '|' + shown(of("lblSize")), "Browse|Size");
        EXPECT_EQ(shown(of("txtFilNam")) + shown(of("lblCodeSize")), "");
    }
    QStringList entries;
    for (const QAction* entry : window.menuBar()->actions().first(2))
        entries += entry->text();
    for (const QAction* entry : find<QMenu>("mnuFile")->actions().first(5))
        entries += entry->objectName() + ": " + entry->text();
    EXPECT_EQ(entries.join('|'), " &File| &About|mnuLoadIni: &Load INI file|mnuWriteIni: &Write INI file|"
                                 "mnuExecScript: &Execute Script|sep: |mnuExit: &Exit");

    const auto* bar = find("pgbDownload");
    EXPECT_EQ(bar->parentWidget(), find("staStatus_2"));
    EXPECT_EQ(bar->geometry(), bar->parentWidget()->contentsRect());
    const auto left = [this](const char* name) { return find(name)->mapTo(&window, QPoint()).x(); };
    EXPECT_TRUE(left("staStatus_0") < left("staStatus_1") && left("staStatus_1") < left("staStatus_2"));
}

TEST_F(Window, ShowsWhatTheControlsHold) {
    zrk::Controls& c = loader.controls;
    fill(3);
    c.lblState.Caption = "Open...";
    c.staStatus.FirstPanel = "first";
    c.staStatus.SecondPanel = "bytes sent 1200 / 4096";
    c.pgbDownload.Value = 29.296875;
    c.lblCodeSize[5].Caption = "0x1F000";
    loader.state.Sent[3] = zrk::SentImage{0xC0FFEE, 5};
    const auto* mark = find<QLabel>("lblFileChanged_3");
    EXPECT_FALSE(mark->isVisible()) << "nothing to report yet";
    c.lblFileChanged[3].Caption = "It has changed.";
    EXPECT_FALSE(mark->pixmap().isNull());
    EXPECT_TRUE(mark->isVisible());
    const std::tuple<const char*, const char*, QString> properties[] = {
        {"mnuExecScript", "enabled", "false"},
        {"txtFilNam_3", "toolTip", "Path: " + folder.path() + "/"},
        {"lblCodeSize_3", "text", "0x5"},
        {"lblCodeSize_3", "toolTip", "5 bytes, about 1 s on the line\nSent: 5 bytes, CRC-32 00C0FFEE"},
        {"lblFileChanged_3", "toolTip", "It has changed."},
        {"lblState", "text", "Open..."},
        {"staStatus_0", "text", "first"},
        {"staStatus_1", "text", "bytes sent 1200 / 4096"},
        {"pgbDownload", "value", "29"},
        {"lblFlashTime", "text", QLocale().toString(126976) + " bytes, about 12 s on the line"},
        // A screen reader reads only a label's name.
        {"lblState", "accessibleName", "Port state: Open..."},
        {"lblCodeSize_5", "accessibleName", "Flash image: size 0x1F000"},
        {"txtStartAddress_2", "accessibleName", "UBoot image: address"},
    };
    for (const auto& [name, property, value] : properties)
        EXPECT_EQ(shown(name, property), value) << name;

    // A board's text and a file's name are not markup.
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

/// In any window, however narrow, and without colours.
TEST_F(Window, AFailureLooksLikeOneAndAClickShowsItWhole) {
    const auto picture = [this](zrk::RemarkSeverity severity) {
        loader.controls.staStatus.FirstPanelSeverity = severity;
        return find("staStatus_0")->grab().toImage();
    };
    const QString whole(400, 'x');
    loader.controls.staStatus.FirstPanel = whole;
    const QImage plain = picture(zrk::RemarkSeverity::Note);
    const QImage done = picture(zrk::RemarkSeverity::Done);
    const QImage warning = picture(zrk::RemarkSeverity::Warning);
    const QImage failed = picture(zrk::RemarkSeverity::Failed);
    EXPECT_TRUE(plain != done && done != warning && warning != failed && plain != failed);
    EXPECT_EQ(picture(zrk::RemarkSeverity::Note), plain);
    click("staStatus_0");
    auto* popup = qobject_cast<QLabel*>(QApplication::activePopupWidget());
    ASSERT_NE(popup, nullptr);
    EXPECT_EQ(popup->text(), whole);
    QTest::keyClick(popup, Qt::Key_Escape);
    EXPECT_EQ(QApplication::activePopupWidget(), nullptr);
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

TEST_F(Window, ARemarkInTheStatusBarLastsUntilTheNextActionOrInput) {
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
    click("chkExeURK_4");
    loop.runFor(300ms);
    EXPECT_EQ(shown("staStatus_0"),
              "Kernel image has no file yet: choose one with Browse, or drop it on the row.");
}

} // namespace
