#include "app/WindowFileDialog.h"
#include "app/WindowMessageBoxes.h"
#include "support/Rig.h"

#include <QFileDialog>
#include <QMessageBox>
#include <QPushButton>
#include <QTest>

namespace {

using namespace zrktest;
using zrk::Answer;
using zrk::MessageButtons;
using zrk::MessageIcon;

TEST(MessageBoxes, ABoxIsAsAskedForBelongsToItsWindowAndTakesEscapeForNo) {
    QWidget parent;
    const zrk::MessageBox question{"y", MessageIcon::Question, MessageButtons::YesNo, "Q"};
    const struct {
        zrk::MessageBox asked;
        QMessageBox::StandardButton pressed; // none: Escape
        QString texts;
        QMessageBox::Icon icon;
        Answer answer;
    } cases[] = {
        {{"one\r\ntwo", MessageIcon::Exclamation, MessageButtons::Ok, "Error"},
         QMessageBox::Ok,
         "Error|one\ntwo",
         QMessageBox::Warning,
         Answer::Ok},
        {{"x", MessageIcon::Information, MessageButtons::Ok, ""},
         QMessageBox::Ok,
         "ZRK6924 Loader|x",
         QMessageBox::Information,
         Answer::Ok},
        {question, QMessageBox::Yes, "Q|y", QMessageBox::Question, Answer::Yes},
        {question, QMessageBox::No, "Q|y", QMessageBox::Question, Answer::No},
        {question, QMessageBox::NoButton, "Q|y", QMessageBox::Question, Answer::No},
    };
    for (const auto& oneCase : cases) {
        const auto user = [&](QMessageBox& box) {
            EXPECT_EQ(box.parentWidget(), &parent);
            EXPECT_EQ(box.windowTitle() + '|' + box.text(), oneCase.texts);
            EXPECT_EQ(box.icon(), oneCase.icon);
            if (oneCase.asked.buttons == MessageButtons::YesNo) {
                EXPECT_EQ(box.defaultButton(), box.button(QMessageBox::No));
            }
            box.open();
            if (oneCase.pressed == QMessageBox::NoButton)
                QTest::keyClick(&box, Qt::Key_Escape);
            else
                box.button(oneCase.pressed)->click();
            EXPECT_FALSE(box.isVisible());
            return box.result();
        };
        EXPECT_EQ(zrk::WindowMessageBoxes([&] { return &parent; }, user).show(oneCase.asked), oneCase.answer);
    }
}

TEST(FileDialog, OffersTheEntriesInOrderAndOnlyFilesThatExist) {
    QTemporaryDir folder;
    QFile file(folder.filePath("a.ubt"));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    QWidget parent;
    QTemporaryDir first;
    QString expectedFolder = first.path();
    bool accept = false;
    zrk::WindowFileDialog dialog(
        [&] { return &parent; },
        [&](QFileDialog& shown) {
            EXPECT_EQ(shown.parentWidget(), &parent);
            EXPECT_EQ(shown.windowTitle(), "Open binary file");
            EXPECT_EQ(shown.directory().path(), expectedFolder);
            EXPECT_EQ(shown.fileMode(), QFileDialog::ExistingFile);
            EXPECT_EQ(shown.nameFilters().join(';'),
                      "Binary Files (.bin) (*.bin);Uboot Image (.ubt) (*.ubt);All Files (*.*) (*)");
            EXPECT_EQ(shown.selectedNameFilter(), "Uboot Image (.ubt)");
            shown.selectFile(file.fileName());
            return accept;
        });
    const zrk::FileRequest request{
        "Open binary file",
        {{"Binary Files (.bin)", "*.bin"}, {"Uboot Image (.ubt)", "*.ubt"}, {"All Files (*.*)", "*.*"}},
        2,
        first.path()};
    EXPECT_EQ(dialog.openFile(request), "");
    accept = true;
    EXPECT_EQ(dialog.openFile(request), file.fileName());
    // Only a choice, not a cancelled dialog, sets where the next dialog begins.
    expectedFolder = folder.path();
    EXPECT_EQ(dialog.openFile(request), file.fileName());
}

} // namespace
