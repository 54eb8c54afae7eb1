#include "app/ConsoleTools.h"
#include "app/FileNameEdit.h"
#include "app/LoaderForm.h"
#include "gui/WindowRig.h"

#include <set>

namespace {

using namespace zrktest;

class Layout : public WindowTest {};

TEST_F(Layout, NoCaptionIsCut) {
    for (const QWidget* widget : window.findChildren<QWidget*>()) {
        const bool hasCaption = widget->inherits("QAbstractButton") || widget->inherits("QLabel");
        if (!hasCaption || !widget->isVisible() || widget->objectName() == "staStatus_0")
            continue;
        // A row's button is narrower than the style wants for a button that stands alone.
        const int width = widget->objectName().startsWith("cmdBrowse")
                              ? widget->fontMetrics().horizontalAdvance("Browse") + 12
                              : widget->minimumSizeHint().width();
        EXPECT_GE(widget->width(), width) << widget->objectName().toStdString();
        EXPECT_GE(widget->height(), widget->minimumSizeHint().height()) << widget->objectName().toStdString();
    }
    const auto* address = find<QLineEdit>("txtStartAddress_1");
    EXPECT_GT(address->width(), address->fontMetrics().horizontalAdvance("0x80000000") + 8);
}

TEST_F(Layout, TheColumnsStandInLineButOnASmallScreenTheNamesOfFilesUseWhatShortCaptionsLeave) {
    zrk::LoaderWidgets widgets;
    zrk::LoaderForm form(widgets, nullptr);
    widgets.consoleTools =
        new zrk::ConsoleTools({widgets.txtStatus, widgets.scrStatus}, widgets.fraControl, [] {});
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
TEST_F(Layout, FitsASmallScreenAndLeavesTheConsoleMoreThanHalfOfAMediumOne) {
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
    // Too narrow for the controls, which can be scrolled then, but not for the status bar.
    window.fitInto({0, 0, 700, 540});
    const QWidget* bar = find("pgbDownload");
    EXPECT_EQ(bar->visibleRegion().boundingRect().size(), bar->size());
}

TEST_F(Layout, NoAddressIsCutInAnyFont) {
    const QFont usual = QApplication::font();
    const auto restore = qScopeGuard([&usual] { QApplication::setFont(usual); });
    for (const char* family : {"DejaVu Sans", "DejaVu Serif", "Noto Sans"}) {
        for (const int points : {9, 11, 14}) {
            SCOPED_TRACE(family + std::to_string(points));
            QApplication::setFont(QFont(family, points));
            zrk::MainWindow other(loader, catalog, folder.filePath("window.conf"), [] {});
            other.show();
            for (int slot = 1; slot < 8; ++slot)
                loader.controls.lvwAdrs.add({QString::number(slot), "0xDDDDDDDD", "0xDDDDDDDD", slot > 3});
            QApplication::processEvents();
            const auto* list = other.findChild<QTreeWidget*>("lvwAdrs");
            ASSERT_NE(list, nullptr);
            const QAbstractItemView& view = *list;
            for (int column = 0; column < 3; ++column) {
                EXPECT_GE(list->columnWidth(column), view.sizeHintForColumn(column));
                EXPECT_GE(list->columnWidth(column), list->header()->sectionSizeHint(column));
            }
            EXPECT_LE(list->header()->length(), list->viewport()->width());
            loader.controls.lvwAdrs.clear();
            EXPECT_EQ(list->fontInfo().pointSize(), points) << "smaller only where it must be";
        }
    }
}

TEST_F(Layout, ShowsTheEndsOfALongFileNameAndThatAFileIsMissing) {
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

} // namespace
