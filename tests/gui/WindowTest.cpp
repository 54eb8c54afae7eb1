#include "app/ConsoleLog.h"
#include "app/ConsoleTools.h"
#include "app/FileNameEdit.h"
#include "app/FileRecording.h"
#include "app/LoaderForm.h"
#include "gui/WindowRig.h"
#include "machine/TracedPorts.h"

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
    const QStringList live{"cmdCancel", "mnuExit", "chkExeURK_0", "txtStartAddress_0", "cmbComPort"};
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
    // The bar runs to and fro while an operation waits for something that takes as long as it takes.
    loader.state.WaitingFor = "The board erases the flash";
    loader.state.WaitingSince = loop.now();
    loop.runFor(500ms);
    EXPECT_EQ(shown("pgbDownload", "maximum"), "0");
    EXPECT_EQ(shown("staStatus_0"), "The board erases the flash: 0 s");
    loader.state.WaitingFor.clear();
    loader.state.OperationActive = false;
    EXPECT_EQ(shown("pgbDownload", "maximum"), "100");
    EXPECT_EQ(shown("cmdURK", "enabled"), "false");
    EXPECT_TRUE(shown("cmdURK", "toolTip").startsWith("The primary boot must run first"));
}

TEST_F(Window, GreysWhatTheRunningOperationHasReadUntilItEnds) {
    fill(zrk::kFlashImage);
    const QString path = shown("txtFilNam_5", "toolTip");
    const QStringList fields{"chkExeURK_5", "txtFilNam_5", "txtStartAddress_5", "chkErase"};
    for (const bool spent : {true, false}) {
        loader.operation.begin();
        loader.state.SlotIsSpent[zrk::kFlashImage] = true;
        loader.state.EraseIsSpent = true;
        if (!spent)
            loader.operation.finish();
        for (const QString& name : fields) {
            EXPECT_EQ(shown(name, "enabled"), spent ? "false" : "true") << name.toStdString();
            EXPECT_EQ(shown(name, "toolTip") == "The running operation has read this already.", spent);
        }
        EXPECT_EQ(shown("chkExeURK_6", "enabled"), "true");
    }
    EXPECT_EQ(shown("txtFilNam_5", "toolTip"), path);
}

TEST_F(Window, OpensAnotherIniFileAndListsTheLastOnes) {
    const auto write = [this](const QString& name, const QByteArray& text) {
        QDir(folder.path()).mkpath(QFileInfo(name).path());
        QFile file(folder.filePath(name));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly) && file.write(text) == text.size());
        return file.fileName();
    };
    const auto recent = [this] {
        auto* menu = find<QMenu>("mnuRecentIni");
        Q_EMIT menu->aboutToShow();
        return menu->actions();
    };
    EXPECT_FALSE(recent().constFirst()->isEnabled()) << "none yet";
    loader.state.IniPath = write("first.INI", "[BINFILES]\nPRIMARY=p.bin\n");
    (void)image("p.bin");
    (void)write("other/p.bin", "123456");
    fileDialog.choice = write("other/board.INI", "[BINFILES]\nPRIMARY=p.bin,0x10\n");
    trigger("mnuOpenIni");
    EXPECT_EQ(loader.state.IniPath, fileDialog.choice);
    EXPECT_EQ(shown("lblCodeSize_0"), "0x6") << "of the file beside the INI file";
    loader.imageSlots.fill(0, folder.filePath("p.bin"));
    trigger("mnuLoadIni");
    EXPECT_EQ(shown("lblCodeSize_0"), "0x6") << "what is there is read again";

    ASSERT_EQ(recent().size(), 2);
    EXPECT_EQ(recent()[0]->text(), "&1 " + fileDialog.choice);
    loader.state.OperationActive = true;
    recent()[1]->trigger();
    EXPECT_EQ(shown("lblCodeSize_0"), "0x6") << "an operation reads the slots";
    loader.state.OperationActive = false;
    recent()[1]->trigger();
    EXPECT_EQ(shown("lblCodeSize_0"), "0x5") << "back to the one before";
    QFile::remove(fileDialog.choice);
    recent()[1]->trigger();
    EXPECT_TRUE(boxes.shown.constLast().startsWith("[Open INI file] ! Cannot read " + fileDialog.choice));
    EXPECT_EQ(recent().size(), 1);
    EXPECT_EQ(shown("lblCodeSize_0"), "0x5");
    fileDialog.choice = write("other.INI", "[BINFILES]\nSECONDARY=image.bin,0x80000000\n");
    trigger("mnuOpenIni");
    EXPECT_EQ(loader.state.Remark, "Not in this file, kept from before: Primary Boot (IRAM).");
    for (const char* name : {"1.INI", "2.INI", "3.INI", "4.INI", "5.INI"}) {
        fileDialog.choice = write(name, ";");
        trigger("mnuOpenIni");
    }
    EXPECT_EQ(recent().size(), 5);
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

TEST_F(Window, AFileDroppedOnARowFillsThatSlot) {
    const QUrl file = QUrl::fromLocalFile(image("dropped.img"));
    const QPoint kernelRow = find("txtStartAddress_4")->geometry().center();
    const auto drop = [&](const QList<QUrl>& urls, QPoint position) {
        QMimeData data;
        data.setUrls(urls);
        QDragEnterEvent enter(position, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(find("fraImages"), &enter);
        QDropEvent event(position, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        event.ignore();
        QApplication::sendEvent(find("fraImages"), &event);
        return enter.isAccepted() && event.isAccepted();
    };
    EXPECT_FALSE(drop({QUrl::fromLocalFile(folder.path())}, kernelRow)) << "a folder";
    EXPECT_FALSE(drop({file, file}, kernelRow)) << "two files";
    EXPECT_FALSE(drop({QUrl("https://example.org/x.img")}, kernelRow));
    EXPECT_FALSE(drop({file}, QPoint(kernelRow.x(), 1))) << "no row";
    loader.state.OperationActive = true;
    EXPECT_FALSE(drop({file}, kernelRow)) << "an operation runs";
    loader.state.OperationActive = false;
    EXPECT_EQ(shown("txtFilNam_4"), "");
    EXPECT_TRUE(drop({file}, kernelRow));
    EXPECT_EQ(loader.controls.txtFilNam[4].Tag.value(), file.toLocalFile());
    EXPECT_TRUE(loader.controls.chkExeURK[4].isTicked());
}

TEST_F(Window, NoCaptionIsCut) {
    for (const QWidget* widget : window.findChildren<QWidget*>()) {
        const bool hasCaption = widget->inherits("QAbstractButton") || widget->inherits("QLabel");
        if (!hasCaption || !widget->isVisible() || widget->objectName() == "staStatus_0")
            continue;
        // A row's button is narrower than a style wants those that stand alone.
        const int width = widget->objectName().startsWith("cmdBrowse")
                              ? widget->fontMetrics().horizontalAdvance("Browse") + 12
                              : widget->minimumSizeHint().width();
        EXPECT_GE(widget->width(), width) << widget->objectName().toStdString();
        EXPECT_GE(widget->height(), widget->minimumSizeHint().height()) << widget->objectName().toStdString();
    }
    const auto* address = find<QLineEdit>("txtStartAddress_1");
    EXPECT_GT(address->width(), address->fontMetrics().horizontalAdvance("0x80000000") + 8);
}

TEST_F(Window, TheColumnsStandInLineButOnASmallScreenTheNamesOfFilesUseWhatShortCaptionsLeave) {
    zrk::LoaderWidgets widgets;
    zrk::LoaderForm form(widgets, nullptr);
    widgets.consoleTools = new zrk::ConsoleTools(widgets.txtStatus, widgets.fraControl, [] {});
    for (std::size_t i = 0; i < widgets.slots.size(); ++i) {
        widgets.slots[i].chkExeURK->setText(loader.controls.chkExeURK[i].Caption);
        widgets.slots[i].lblStart->setText(loader.controls.lblStart[i].Caption);
        widgets.slots[i].cmdBrowse->setText(loader.controls.cmdBrowse[i].Caption);
    }
    widgets.cmdTerminal->setText(loader.controls.cmdTerminal.Caption);
    form.show();
    const auto lefts = [&](auto member) {
        std::set<int> all;
        for (const zrk::SlotWidgets& row : widgets.slots)
            all.insert((row.*member)->mapTo(&form, QPoint()).x());
        return all.size();
    };
    const auto characters = [&](std::size_t slot) {
        const QLineEdit* field = widgets.slots[slot].txtFilNam;
        return field->width() / field->fontMetrics().horizontalAdvance('8');
    };
    for (const bool small : {true, false}) {
        form.placeControls(widgets, small ? QSize(960, 540) : QSize(1920, 1080));
        QApplication::processEvents();
        EXPECT_EQ(lefts(&zrk::SlotWidgets::txtFilNam), small ? 3U : 1U);
        EXPECT_EQ(lefts(&zrk::SlotWidgets::cmdBrowse), 1U);
        EXPECT_EQ(lefts(&zrk::SlotWidgets::txtStartAddress), 1U);
        EXPECT_EQ(lefts(&zrk::SlotWidgets::lblCodeSize), 1U);
        EXPECT_GE(characters(0), small ? 16 : 44);
        EXPECT_GE(characters(4), small ? 26 : 44);
        EXPECT_LE(form.sizeHint().width(), small ? 960 : 1920);
    }
}

/// At 200 % on a Full HD screen, and at 100 % on a small one.
TEST_F(Window, FitsASmallScreenAndLeavesTheConsoleMoreThanHalfOfAMediumOne) {
    const auto* console = find<QPlainTextEdit>("txtStatus");
    window.fitInto({0, 0, 960, 540});
    EXPECT_LE(window.width(), 960);
    EXPECT_LE(window.height(), 540);
    for (const char* name : {"cmdCancel", "cmbComPort", "cmdStartPrimary", "cmdStartSecondary", "cmdURK",
                             "cmdPrgFlash", "chkErase", "cmdValidateAdrs"}) {
        const QWidget* control = find(name);
        const QRect place(control->mapTo(&window, QPoint()), control->size());
        EXPECT_TRUE(window.rect().contains(place)) << name;
        EXPECT_EQ(control->visibleRegion().boundingRect().size(), control->size()) << name;
    }
    EXPECT_GE(console->viewport()->height(), 10 * console->fontMetrics().lineSpacing());
    window.resize(window.width(), 760);
    EXPECT_GT(console->height(), 380);
}

TEST_F(Window, ShowsTheEndsOfALongFileNameAndThatAFileIsMissing) {
    const QString name = "u-boot-2010.06-board-7-revision-c-with-patches-1234.bin";
    loader.controls.txtFilNam[2].Text = name;
    auto* field = find<QLineEdit>("txtFilNam_2");
    const auto* asFileName = qobject_cast<zrk::FileNameEdit*>(field);
    ASSERT_NE(asFileName, nullptr);
    const auto width = [field](const QString& text) { return field->fontMetrics().horizontalAdvance(text); };
    const QString shown = asFileName->fitted(width("u-boot-20 34.bin"));
    EXPECT_TRUE(shown.startsWith("u-b") && shown.endsWith(".bin") && shown.contains(QChar(0x2026)))
        << shown.toStdString();
    EXPECT_EQ(field->text(), name);
    const auto tip = [field] {
        QHelpEvent hovers(QEvent::ToolTip, QPoint(5, 5), field->mapToGlobal(QPoint(5, 5)));
        QApplication::sendEvent(field, &hovers);
        return QToolTip::text();
    };
    loader.controls.txtFilNam[2].ToolTipText = "Path: /img/";
    EXPECT_EQ(tip(), "Path: /img/\n" + name);
    const QColor usual = field->palette().color(QPalette::Text);
    loader.controls.txtFilNam[2].Text = "CAN'T FIND: " + name;
    EXPECT_TRUE(asFileName->fitted(width("CAN'T FIND: u-boot")).startsWith("CAN'T FIND: "));
    EXPECT_NE(field->palette().color(QPalette::Text), usual);
    loader.controls.txtFilNam[2].Text = "u.bin";
    EXPECT_EQ(field->palette().color(QPalette::Text), usual);
    EXPECT_EQ(tip(), "Path: /img/");
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

/// Over the scripted port of the fixture, which the window's own loader does not open.
TEST_F(Window, RecordsATraceBetweenTwoClicks) {
    zrk::TracedPorts traced(loop, port);
    zrk::Loader recorded({loop, traced, boxes, fileDialog, waitDialog}, folder.path());
    recorded.startUp.prepare({folder.path(), "loader", 0, 7, 34});
    auto* entry = find<QAction>("mnuRecordTrace");
    zrk::recordTrace(*entry, traced, recorded);
    trigger("mnuRecordTrace");
    EXPECT_FALSE(entry->isChecked()) << "the dialog was cancelled";
    EXPECT_TRUE(fileDialog.requests[0].isToBeWritten);

    fileDialog.choice = folder.filePath("bench.trace");
    trigger("mnuRecordTrace");
    EXPECT_TRUE(entry->isChecked());
    EXPECT_EQ(entry->text(), "Record &trace to bench.trace");
    recorded.port.OpenComPort();
    recorded.port.Output("hello");
    trigger("mnuRecordTrace");
    EXPECT_FALSE(entry->isChecked());
    QFile file(fileDialog.choice);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_TRUE(file.readAll().contains(" > 68 65 6c 6c 6f "));

    fileDialog.choice = "/nonexistent/bench.trace";
    trigger("mnuRecordTrace");
    EXPECT_FALSE(entry->isChecked());
    loop.runFor(1ms);
    EXPECT_EQ(boxes.shown.size(), 1);
    EXPECT_TRUE(boxes.shown.value(0).contains("/nonexistent/bench.trace cannot be written"));
}

TEST_F(Window, LogsWhatComesIntoTheConsoleBetweenTwoClicks) {
    zrk::ConsoleLog log(loop, loader.controls.txtStatus);
    auto* entry = find<QAction>("mnuLogToFile");
    auto* stamps = find<QAction>("mnuLogTimes");
    zrk::logToFile(*entry, *stamps, log, loader, folder.filePath("window.conf"));
    EXPECT_FALSE(stamps->isChecked());
    loader.console.PrintPlain("before");
    fileDialog.choice = folder.filePath("bench.log");
    trigger("mnuLogToFile");
    EXPECT_EQ(entry->text(), "Log to &file bench.log");
    loader.state.OperationActive = true;
    EXPECT_TRUE(entry->isEnabled()) << "to end it takes no dialog";
    loader.state.OperationActive = false;
    loader.console.PrintPlain(QStringLiteral("printed \u00e4\r\n"));
    loader.terminal.ShowReceived(QStringLiteral("\b\u001b[0;32mboard\u00c3\u00a4\b\r\n"));
    stamps->trigger();
    loader.console.PrintPlain("at");
    trigger("mnuLogToFile");
    loader.console.PrintPlain("behind");
    QFile file(fileDialog.choice);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QByteArray logged = file.readAll();
    const QByteArray plain = "printed \xC3\xA4\r\n\b\x1b[0;32mboard\xC3\xA4\b\r\n";
    EXPECT_TRUE(logged.startsWith(plain)) << logged.constData();
    EXPECT_EQ(logged.size(), plain.size() + QByteArray("2026-03-01 14:05:06.789 at").size());
    EXPECT_TRUE(
        QSettings(folder.filePath("window.conf"), QSettings::IniFormat).value("logTimeStamps").toBool());

    // A protocol's answers are bytes of the board as well, and none is none.
    fileDialog.choice = folder.filePath("answers.log");
    stamps->trigger();
    trigger("mnuLogToFile");
    loader.console.PrintAnswer(QStringLiteral("\u00ff"));
    loader.console.PrintAnswer(QString(QChar(0)));
    trigger("mnuLogToFile");
    QFile answers(fileDialog.choice);
    ASSERT_TRUE(answers.open(QIODevice::ReadOnly));
    EXPECT_EQ(answers.readAll(), "\xFF");

    // A failure leaves the entry ready for the next try.
    fileDialog.choice = "/nonexistent/bench.log";
    trigger("mnuLogToFile");
    loop.runFor(1ms);
    EXPECT_TRUE(boxes.shown.value(0).contains("/nonexistent/bench.log cannot be written"));
    EXPECT_FALSE(entry->isChecked());
    fileDialog.choice = folder.filePath("second.log");
    trigger("mnuLogToFile");
    EXPECT_TRUE(entry->isChecked());
    trigger("mnuLogToFile");
#ifndef _WIN32
    fileDialog.choice = "/dev/full";
    trigger("mnuLogToFile");
    EXPECT_EQ(loader.state.Remark, "Logging what comes into the console to /dev/full");
    loader.console.PrintPlain("x");
    trigger("mnuLogToFile");
    EXPECT_EQ(loader.state.Remark, "") << "it does not log any more";
    loop.runFor(1ms);
    EXPECT_EQ(boxes.shown.size(), 2);
#endif
    loader.state.OperationActive = true;
    EXPECT_FALSE(entry->isEnabled());
}

TEST_F(Window, ARecordThatFailsDuringAnOperationHoldsNothingUp) {
    QAction entry;
    zrk::FileWriter::Told fail;
    zrk::Recording recording;
    recording.start = [&fail](const QString&, zrk::FileWriter::Told failed) { fail = std::move(failed); };
    recording.stop = [&fail] { fail("The disk is full."); };
    recording.ended = "It is complete.";
    new zrk::FileRecording(entry, recording, loader);
    fileDialog.choice = folder.filePath("a");
    entry.trigger();
    loader.state.OperationActive = true;
    fail("The disk is full.");
    loop.runFor(1ms);
    EXPECT_TRUE(boxes.shown.isEmpty());
    EXPECT_TRUE(loader.controls.txtStatus.text().endsWith("--- The disk is full. ---\r\n"));

    loader.state.OperationActive = false;
    entry.trigger();
    entry.trigger(); // ends it, with its last bytes unwritten
    loop.runFor(1ms);
    EXPECT_EQ(boxes.shown.size(), 1);
    EXPECT_NE(loader.state.Remark, "It is complete.");
    EXPECT_FALSE(entry.isChecked());
}

} // namespace
