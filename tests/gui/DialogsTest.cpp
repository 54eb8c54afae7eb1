#include "app/WindowFileDialog.h"
#include "app/WindowMessageBoxes.h"
#include "support/Rig.h"

#include <QFileDialog>
#include <QMessageBox>
#include <QTest>
#include <QTimer>

namespace {

using namespace zrktest;
using zrk::Answer;
using zrk::MessageButtons;
using zrk::MessageIcon;

TEST(MessageBoxes, ABoxIsAsAskedForAndBelongsToItsWindow) {
    QWidget parent;
    QStringList seen;
    int answer = QMessageBox::Ok;
    zrk::WindowMessageBoxes boxes(
        [&] { return &parent; },
        [&](QMessageBox& box) {
            EXPECT_EQ(box.parentWidget(), &parent);
            seen += QStringLiteral("%1|%2|%3").arg(box.windowTitle(), box.text()).arg(box.icon());
            return answer;
        });
    EXPECT_EQ(boxes.show({"one\r\n<b>two</b>", MessageIcon::Exclamation, MessageButtons::Ok, "Error"}),
              Answer::Ok);
    EXPECT_EQ(boxes.show({"x", MessageIcon::Information, MessageButtons::Ok, ""}), Answer::Ok);
    answer = QMessageBox::Yes;
    EXPECT_EQ(boxes.show({"y", MessageIcon::Question, MessageButtons::YesNo, "Q"}), Answer::Yes);
    answer = QMessageBox::No;
    EXPECT_EQ(boxes.show({"y", MessageIcon::Question, MessageButtons::YesNo, "Q"}), Answer::No);
    EXPECT_EQ(seen, QStringList({QStringLiteral("Error|one\n<b>two</b>|%1").arg(QMessageBox::Warning),
                                 QStringLiteral("ZRK6924 Loader|x|%1").arg(QMessageBox::Information),
                                 QStringLiteral("Q|y|%1").arg(QMessageBox::Question),
                                 QStringLiteral("Q|y|%1").arg(QMessageBox::Question)}));
}

TEST(MessageBoxes, EscapeOnAQuestionIsNo) {
    QWidget parent;
    zrk::WindowMessageBoxes boxes([&] { return &parent; },
                                  [](QMessageBox& box) {
                                      box.open();
                                      QTest::keyClick(&box, Qt::Key_Escape);
                                      EXPECT_FALSE(box.isVisible());
                                      return box.result();
                                  });
    EXPECT_EQ(boxes.show({"?", MessageIcon::Question, MessageButtons::YesNo, ""}), Answer::No);
}

TEST(FileDialog, OffersTheEntriesInOrderAndOnlyFilesThatExist) {
    QTemporaryDir folder;
    QFile file(folder.filePath(QStringLiteral("a.ubt")));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    QWidget parent;
    bool accept = true;
    zrk::WindowFileDialog dialog(
        [&] { return &parent; },
        [&](QFileDialog& shown) {
            EXPECT_EQ(shown.parentWidget(), &parent);
            EXPECT_EQ(shown.windowTitle(), "Open binary file");
            EXPECT_EQ(shown.directory().path(), folder.path());
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
        folder.path()};
    EXPECT_EQ(dialog.openFile(request), file.fileName());
    accept = false;
    EXPECT_EQ(dialog.openFile(request), "");
}

} // namespace
