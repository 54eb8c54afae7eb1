#include "gui/WindowRig.h"

namespace {

using namespace zrktest;

class ChosenFiles : public WindowTest {};

TEST_F(ChosenFiles, OpensAnotherIniFileAndListsTheLastOnes) {
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
    EXPECT_EQ(shown("lblCodeSize_0"), "0x6") << "the file is read again";

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
    EXPECT_EQ(loader.state.Remark.text, "Not in this file, kept from before: Primary Boot (IRAM).");
    for (const char* name : {"1.INI", "2.INI", "3.INI", "4.INI", "5.INI"}) {
        fileDialog.choice = write(name, ";");
        trigger("mnuOpenIni");
    }
    EXPECT_EQ(recent().size(), 5);
}

TEST_F(ChosenFiles, SavesTheSlotsAsAnIniFileThatFillsThemAgain) {
    ASSERT_TRUE(QDir(folder.path()).mkpath("board/images"));
    loader.imageSlots.fill(0, image("board/images/p.bin"));
    loader.imageSlots.fill(4, image("kernel.img"));
    loader.controls.txtStartAddress[0].Text = "0x0010";
    loader.controls.txtStartAddress[4].Text = "0x80800000";
    fileDialog.choice = folder.filePath("board/board.INI");
    trigger("mnuSaveIniAs");
    EXPECT_TRUE(boxes.shown.isEmpty());
    EXPECT_EQ(loader.state.IniPath, fileDialog.choice);
    QFile saved(fileDialog.choice);
    ASSERT_TRUE(saved.open(QIODevice::ReadOnly));
    const QByteArray text = saved.readAll();
    EXPECT_EQ(text, "[BINFILES]\nPRIMARY=" + QDir::toNativeSeparators("images/p.bin").toUtf8() +
                        ",0x0010\n[IMGFILES]\nKERNEL=" +
                        QDir::toNativeSeparators(folder.filePath("kernel.img")).toUtf8() + ",0x80800000\n");
    for (const int slot : {0, 4})
        loader.iniLoader.emptySlot(slot);
    trigger("mnuLoadIni");
    EXPECT_EQ(shown("txtFilNam_0") + shown("txtFilNam_4"), "p.binkernel.img");
    EXPECT_EQ(shown("txtStartAddress_0") + shown("txtStartAddress_4"), "0x00100x80800000");

    // What cannot be written leaves the file as it was.
    const QString kernel = loader.controls.txtFilNam[4].Tag;
    fileDialog.choice = kernel;
    trigger("mnuSaveIniAs");
    fileDialog.choice = saved.fileName();
    loader.imageSlots.fill(4, image("one,two.img"));
    trigger("mnuSaveIniAs");
    fileDialog.choice = folder.filePath("nowhere/board.INI");
    loader.imageSlots.fill(4, kernel);
    trigger("mnuSaveIniAs");
    ASSERT_EQ(boxes.shown.size(), 3);
    EXPECT_TRUE(boxes.shown[0].contains("is the file of a slot"));
    EXPECT_TRUE(boxes.shown[1].contains("Kernel image: an INI file cannot hold the path"));
    EXPECT_TRUE(boxes.shown[2].contains("Cannot write"));
    ASSERT_TRUE(saved.seek(0));
    EXPECT_EQ(saved.readAll(), text);
    EXPECT_EQ(loader.state.IniPath, saved.fileName());
}

TEST_F(ChosenFiles, ShowHiddenCharactersOfTheirNames) {
    const QString path = image(QStringLiteral("k\u202Egmi.bin"));
    loader.imageSlots.fill(4, path);
    EXPECT_EQ(shown("txtFilNam_4"), "k<U+202E>gmi.bin");
#ifndef _WIN32
    ASSERT_TRUE(QDir(folder.path()).mkdir("links"));
    const QString link = folder.filePath("links/kernel.img");
    ASSERT_TRUE(QFile::link(path, link));
    loader.imageSlots.fill(4, link);
    EXPECT_EQ(shown("txtFilNam_4"), "kernel.img");
    EXPECT_TRUE(find("txtFilNam_4")->toolTip().contains("U+202E")) << "the real file";
#endif
}

TEST_F(ChosenFiles, AFileDroppedOnARowFillsThatSlot) {
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

} // namespace
