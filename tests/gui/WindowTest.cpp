#include "app/SlotDrop.h"
#include "gui/WindowRig.h"

#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QDropEvent>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMimeData>
#include <QProgressBar>
#include <QPushButton>
#include <QTest>
#include <QTreeWidget>
#include <QUrl>

#include <set>

namespace {

using namespace zrktest;

class Window : public WindowTest {
  protected:
    QString captionOf(const QString& name) {
        if (const auto* button = window.findChild<QAbstractButton*>(name))
            return button->text();
        if (const auto* label = window.findChild<QLabel*>(name))
            return label->text();
        if (const auto* frame = window.findChild<QGroupBox*>(name))
            return frame->title();
        if (const auto* edit = window.findChild<QLineEdit*>(name))
            return edit->text();
        if (const auto* entry = window.findChild<QAction*>(name))
            return entry->text();
        return QStringLiteral("(no such control)");
    }
    bool isLive(const QString& name) {
        if (const auto* entry = window.findChild<QAction*>(name))
            return entry->isEnabled();
        return find<QWidget>(name)->isEnabled();
    }
};

TEST_F(Window, ShowsTheStartingStateInItsControls) {
    EXPECT_EQ(window.windowTitle(), "ZRK6924 Loader");
    EXPECT_EQ(captionOf(QStringLiteral("lblHeader")), "ZRK6957 loader, V0.7 (rev 34)");
    EXPECT_EQ(captionOf(QStringLiteral("cmdCancel")), "&Cancel && Close port");
    EXPECT_EQ(captionOf(QStringLiteral("mnuAbout")), " &About");
    EXPECT_EQ(find<QMenu>(QStringLiteral("mnuFile"))->title(), " &File");
    EXPECT_FALSE(isLive(QStringLiteral("mnuExecScript")));
    const QFont header = find<QLabel>(QStringLiteral("lblHeader"))->font();
    EXPECT_TRUE(header.bold() && header.families().first() == QLatin1String("MS Sans Serif"));
    const auto* ports = find<QComboBox>(QStringLiteral("cmbComPort"));
    EXPECT_EQ(ports->itemText(0) + ports->itemText(7), "COM1:COM8:");
    const auto* list = find<QTreeWidget>(QStringLiteral("lvwAdrs"));
    EXPECT_EQ(list->headerItem()->text(0) + list->headerItem()->text(1) + list->headerItem()->text(2),
              "indexstartsize");
}

TEST_F(Window, ShowsWhatTheControlsHoldAndGivesThemWhatIsEntered) {
    zrk::Controls& c = loader.controls;
    fill(3);
    EXPECT_EQ(captionOf(QStringLiteral("txtFilNam_3")), "slot3.bin");
    EXPECT_EQ(find<QWidget>(QStringLiteral("txtFilNam_3"))->toolTip(), "Path: " + folder.path() + "/");
    EXPECT_EQ(captionOf(QStringLiteral("lblCodeSize_3")), "0x5");
    auto* box = find<QCheckBox>(QStringLiteral("chkExeURK_3"));
    EXPECT_TRUE(box->isChecked());
    box->click();
    EXPECT_EQ(c.chkExeURK[3].Value, 0);
    box->click();
    EXPECT_EQ(c.chkExeURK[3].Value, 1);
    // Without a file the rule takes the tick back.
    find<QCheckBox>(QStringLiteral("chkExeURK_4"))->click();
    EXPECT_FALSE(find<QCheckBox>(QStringLiteral("chkExeURK_4"))->isChecked());
    EXPECT_EQ(c.chkExeURK[4].Value, 0);
    find<QCheckBox>(QStringLiteral("chkErase"))->click();
    EXPECT_EQ(c.chkErase.Value, 1);

    c.cmdTerminal.Caption = QStringLiteral("Disable Terminal mode");
    c.lblState.Caption = QStringLiteral("Open...");
    c.staStatus.FirstPanel = QStringLiteral("first");
    c.staStatus.SecondPanel = QStringLiteral("bytes sent 1200 / 4096");
    c.pgbDownload.Value = 29.296875;
    EXPECT_EQ(captionOf(QStringLiteral("cmdTerminal")), "Disable Terminal mode");
    EXPECT_EQ(captionOf(QStringLiteral("lblState")), "Open...");
    EXPECT_EQ(captionOf(QStringLiteral("staStatus_0")), "first");
    EXPECT_EQ(captionOf(QStringLiteral("staStatus_1")), "bytes sent 1200 / 4096");
    const auto* bar = find<QProgressBar>(QStringLiteral("pgbDownload"));
    EXPECT_EQ(bar->value(), 29);
    EXPECT_EQ(bar->minimum(), 0);
    EXPECT_EQ(bar->maximum(), 100);
    EXPECT_TRUE(find<QWidget>(QStringLiteral("staStatus"))->isAncestorOf(bar));

    auto* ports = find<QComboBox>(QStringLiteral("cmbComPort"));
    ports->setFocus();
    QTest::keyClick(ports, Qt::Key_Down);
    EXPECT_EQ(c.cmbComPort.selectedItemData(), 2);
    c.cmbComPort.ListIndex = 5;
    EXPECT_EQ(ports->currentText(), "COM6:");
    c.cmbComPort.Enabled = false;
    EXPECT_FALSE(ports->isEnabled());

    c.lvwAdrs.add({QStringLiteral("3"), QStringLiteral("0x00000004"), QStringLiteral("0x5")});
    const auto* list = find<QTreeWidget>(QStringLiteral("lvwAdrs"));
    ASSERT_EQ(list->topLevelItemCount(), 1);
    EXPECT_EQ(list->topLevelItem(0)->text(1), "0x00000004");
    EXPECT_EQ(list->topLevelItem(0)->toolTip(0), "Root FS image");

    const auto* mark = find<QLabel>(QStringLiteral("lblFileChanged_3"));
    EXPECT_TRUE(mark->pixmap().isNull());
    c.lblFileChanged[3].Caption = QStringLiteral("It has changed.");
    EXPECT_FALSE(mark->pixmap().isNull());
    EXPECT_EQ(mark->toolTip(), "It has changed.");
    c.lblCodeSize[5].Caption = QStringLiteral("0x1F000");
    EXPECT_EQ(captionOf(QStringLiteral("lblFlashTime")),
              QLocale().toString(126976) + " bytes, about 12 s on the line");
}

TEST_F(Window, GreysWhatWouldStartOrStallAnOperationOnTopOfTheControlsOwnState) {
    const QStringList greyed{"cmdPrgFlash", "cmdStartPrimary", "cmdStartSecondary", "cmdURK",
                             "cmdTerminal", "cmdValidateAdrs", "cmdBrowse_0",       "cmdBrowse_6",
                             "mnuLoadIni",  "mnuWriteIni",     "mnuExecScript",     "mnuAbout"};
    const QStringList live{"cmdCancel", "mnuExit", "chkExeURK_0", "txtStartAddress_0", "cmbComPort"};
    zrk::Controls& c = loader.controls;
    for (auto* button : {&c.cmdStartPrimary, &c.cmdStartSecondary, &c.cmdURK})
        button->Enabled = true;
    c.mnuExecScript.Enabled = true;
    for (const bool active : {false, true, false}) {
        loader.state.OperationActive = active;
        for (const QString& name : greyed)
            EXPECT_EQ(isLive(name), !active) << name.toStdString();
        for (const QString& name : live)
            EXPECT_TRUE(isLive(name)) << name.toStdString();
    }
    loader.state.OperationActive = true;
    c.cmdURK.Enabled = false;
    loader.state.OperationActive = false;
    EXPECT_FALSE(isLive(QStringLiteral("cmdURK")));

    // The bar runs to and fro while an operation waits for something that takes as long as it takes.
    const auto* bar = find<QProgressBar>(QStringLiteral("pgbDownload"));
    loader.state.OperationActive = true;
    loader.state.WaitingFor = QStringLiteral("The board erases the flash");
    loader.state.WaitingSince = loop.now();
    loop.runFor(500ms);
    EXPECT_EQ(bar->maximum(), 0);
    EXPECT_EQ(captionOf(QStringLiteral("staStatus_0")), "The board erases the flash: 0 s");
    loader.state.WaitingFor.clear();
    loader.state.OperationActive = false;
    EXPECT_EQ(bar->maximum(), 100);
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
    EXPECT_EQ(find<QWidget>(QStringLiteral("txtStartAddress_2"))->accessibleName(), "UBoot image: address");
    loader.controls.lblCodeSize[5].Caption = QStringLiteral("0x1F000");
    EXPECT_EQ(find<QWidget>(QStringLiteral("lblCodeSize_5"))->accessibleName(), "Flash image: size 0x1F000");
    EXPECT_EQ(find<QWidget>(QStringLiteral("lblState"))->accessibleName(), "Port state: Closed...");
    EXPECT_FALSE(find<QWidget>(QStringLiteral("lblFileChanged_2"))->isVisible()) << "nothing to tell yet";
}

TEST_F(Window, AFileDroppedOnARowFillsThatSlot) {
    QFile file(folder.filePath(QStringLiteral("dropped.img")));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly) && file.write("abc") == 3);
    file.close();
    auto* frame = find<QGroupBox>(QStringLiteral("fraImages"));
    const auto drop = [&](const QList<QUrl>& urls, QPoint position) {
        QMimeData data;
        data.setUrls(urls);
        QDragEnterEvent enter(position, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(frame, &enter);
        QDropEvent event(position, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        event.ignore();
        QApplication::sendEvent(frame, &event);
        return enter.isAccepted() && event.isAccepted();
    };
    const QPoint kernelRow = find<QWidget>(QStringLiteral("txtStartAddress_4"))->geometry().center();
    const QUrl url = QUrl::fromLocalFile(file.fileName());
    const auto& tag = loader.controls.txtFilNam[4].Tag;

    EXPECT_FALSE(drop({QUrl::fromLocalFile(folder.path())}, kernelRow)) << "a folder";
    EXPECT_FALSE(drop({url, url}, kernelRow)) << "two files";
    EXPECT_FALSE(drop({QUrl(QStringLiteral("https://example.org/x.img"))}, kernelRow));
    EXPECT_FALSE(drop({url}, QPoint(kernelRow.x(), 1))) << "no row";
    loader.state.OperationActive = true;
    EXPECT_FALSE(drop({url}, kernelRow)) << "an operation runs";
    loader.state.OperationActive = false;
    EXPECT_EQ(tag.value(), "");
    EXPECT_TRUE(drop({url}, kernelRow));
    EXPECT_EQ(tag.value(), file.fileName());
    EXPECT_TRUE(loader.controls.chkExeURK[4].isTicked());
    EXPECT_EQ(captionOf(QStringLiteral("lblCodeSize_4")), "0x3");
}

TEST_F(Window, NoCaptionIsCutAndTheColumnsOfAllFramesStandInLine) {
    for (const QWidget* widget : window.findChildren<QWidget*>()) {
        const auto* button = qobject_cast<const QAbstractButton*>(widget);
        const auto* label = qobject_cast<const QLabel*>(widget);
        if ((button == nullptr && label == nullptr) || !widget->isVisible() ||
            widget->objectName() == QLatin1String("staStatus_0"))
            continue;
        EXPECT_GE(widget->width(), widget->minimumSizeHint().width()) << widget->objectName().toStdString();
        EXPECT_GE(widget->height(), widget->minimumSizeHint().height()) << widget->objectName().toStdString();
    }
    for (const char* column : {"txtFilNam_%1", "cmdBrowse_%1", "txtStartAddress_%1", "lblCodeSize_%1"}) {
        std::set<int> lefts;
        for (int slot = 0; slot < 7; ++slot)
            lefts.insert(find<QWidget>(QString::fromLatin1(column).arg(slot))->mapTo(&window, QPoint()).x());
        EXPECT_EQ(lefts.size(), 1U) << column;
    }
    const auto* address = find<QLineEdit>(QStringLiteral("txtStartAddress_1"));
    EXPECT_GT(address->width(), address->fontMetrics().horizontalAdvance(QStringLiteral("0x80000000")) + 6);
}

} // namespace
