#include "support/Rig.h"

#include <QFile>

#include <functional>

namespace {

using namespace zrktest;

class Slots : public ScriptedTest {};

TEST_F(Slots, BrowseFillsTheSlotAndItsRequestIsTheDesignedOne) {
    zrk::Controls& c = loader.controls;
    c.chkExeURK[2].Value = 1;
    EXPECT_FALSE(c.chkExeURK[2].isTicked()) << "there is no file to select";
    bench.fileDialog.choice = bench.file("image.ubt", QByteArray(0xABC, 'x'));
    for (int slot = 0; slot < 7; ++slot) {
        const auto i = static_cast<std::size_t>(slot);
        const auto& name = c.txtFilNam[i];
        const QString address = c.txtStartAddress[i].Text;
        c.cmdStartPrimary.Enabled = false;
        loader.fileChoice.cmdBrowse_Click(slot);
        const zrk::FileRequest& request = bench.fileDialog.requests.last();
        EXPECT_EQ(request.title, "Open binary file");
        EXPECT_EQ(request.folder, native(bench.folder.path()));
        EXPECT_EQ(request.filterIndex, slot >= 2 && slot <= 4 ? 2 : 1) << slot;
        QStringList filters;
        for (const auto& filter : request.filters)
            filters += filter.name + '|' + filter.pattern;
        EXPECT_EQ(filters.join('|'),
                  "Binary Files (.bin)|*.bin|Uboot Image (.ubt)|*.ubt|All Files (*.*)|*.*");
        EXPECT_EQ(name.Text.value(), "image.ubt");
        EXPECT_EQ(name.Tag.value(), bench.fileDialog.choice);
        EXPECT_EQ(name.ToolTipText.value(), "Path: " + native(bench.folder.path() + "/"));
        EXPECT_EQ(c.lblCodeSize[i].Caption.value(), "0xABC");
        EXPECT_EQ(c.txtStartAddress[i].Text.value(), address);
        EXPECT_TRUE(c.chkExeURK[i].isTicked());
        EXPECT_EQ(c.cmdStartPrimary.Enabled, slot == 0);
    }
    // Nothing changes if the dialog is cancelled, or while an operation runs.
    c.chkExeURK[3].Value = 0;
    bench.fileDialog.choice.clear();
    loader.fileChoice.cmdBrowse_Click(3);
    bench.fileDialog.choice = bench.file("other.bin", "");
    loader.state.OperationActive = true;
    loader.fileChoice.cmdBrowse_Click(3);
    EXPECT_TRUE(c.txtFilNam[3].Text.value() == "image.ubt" && !c.chkExeURK[3].isTicked());
    loader.state.OperationActive = false;
    loader.fileChoice.cmdBrowse_Click(3);
    EXPECT_EQ(c.lblCodeSize[3].Caption.value(), "0x0");
    // An unreadable length keeps the previous label; everything else is the new file's.
    bench.fileDialog.choice = native(bench.folder.filePath("gone.bin"));
    loader.fileChoice.cmdBrowse_Click(2);
    EXPECT_EQ(c.lblCodeSize[2].Caption.value(), "0xABC");
    EXPECT_TRUE(c.txtFilNam[2].Text.value() == "gone.bin" && c.chkExeURK[2].isTicked());
    // An operation that began while the dialog was open.
    struct SlowChoice final : zrk::FileDialog {
        std::function<void()> whileOpen;
        [[nodiscard]] QString openFile(const zrk::FileRequest& /*request*/) override {
            whileOpen();
            return QStringLiteral("late.bin");
        }
    } dialog;
    zrk::Desk desk(loop, bench.boxes, dialog);
    dialog.whileOpen = [&desk] { desk.state.OperationActive = true; };
    zrk::FileChoice(desk, loader.imageSlots).cmdBrowse_Click(2);
    EXPECT_EQ(c.txtFilNam[2].Text.value(), "gone.bin");
}

TEST_F(Slots, AnImageOf2GibAndMoreIsRefusedBeforeAnythingIsSent) {
    constexpr qint64 kGib = 1LL << 30;
    for (const auto& [size, label, text] :
         std::initializer_list<std::tuple<qint64, const char*, const char*>>{
             {2 * kGib, "0x80000000", "2147483648"}, {5 * kGib, "0x140000000", "5368709120"}}) {
        for (const int slot : {0, 1, 4, 5, 6}) {
            SCOPED_TRACE(std::to_string(slot) + label);
            ScriptedRig fresh;
            zrk::Controls& c = fresh.loader.controls;
            QFile sparse(fresh.bench.folder.filePath("large.bin"));
            ASSERT_TRUE(sparse.open(QIODevice::WriteOnly) && sparse.resize(size));
            fresh.bench.fill(5, "x", "0");
            fresh.bench.fill(6, "x", "0");
            fresh.bench.fill(slot, "x", "0x83000000");
            fresh.loader.imageSlots.fill(slot, sparse.fileName());
            EXPECT_EQ(c.lblCodeSize[static_cast<std::size_t>(slot)].Caption.value(), label);
            if (slot >= 5)
                fresh.loader.flash.cmdPrgFlash_Click();
            else if (slot == 4)
                fresh.loader.commands.cmdURK_Click();
            else
                fresh.loader.bringUp.cmdStartPrimary_Click();
            ASSERT_EQ(fresh.bench.boxes.shown.size(), 1);
            const QString box = fresh.bench.boxes.shown.last();
            if (slot == 1 || slot == 4)
                EXPECT_TRUE(box.contains("overlaps the address range for maximum address"))
                    << box.toStdString();
            else
                EXPECT_TRUE(box.contains("The image for \"" + c.slotTitle(static_cast<std::size_t>(slot)) +
                                         "\" has " + text + " bytes"))
                    << box.toStdString();
            fresh.bench.expectAtRest();
        }
    }
}

TEST_F(Slots, AFileThatChangedSinceItWasChosenIsMarked) {
    bench.fill(1, "old", "0x80000004");
    const auto mark = [this] {
        loop.runFor(1300ms);
        return loader.controls.lblFileChanged[1].Caption.value();
    };
    EXPECT_EQ(mark(), "");
    QFile file(loader.controls.txtFilNam[1].Tag.value());
    ASSERT_TRUE(file.open(QIODevice::Append));
    EXPECT_EQ(file.write("er"), 2);
    file.close();
    EXPECT_TRUE(mark().contains("changed"));
    EXPECT_TRUE(loader.controls.staStatus.FirstPanel.value().endsWith(
        ": closed. Changed on disk: Secondary Executable (SDRAM)"));
    EXPECT_EQ(loader.controls.lblCodeSize[1].Caption.value(), "0x3") << "the size is not measured again";
    bench.fill(1, "newer", "0x80000004");
    EXPECT_EQ(mark(), "");
    ASSERT_TRUE(file.open(QIODevice::ReadWrite) &&
                file.setFileTime(QDateTime::fromSecsSinceEpoch(1000), QFileDevice::FileModificationTime));
    file.close();
    EXPECT_TRUE(mark().contains("changed"));
    file.remove();
    EXPECT_TRUE(mark().contains("gone"));
    loader.iniLoader.applyValue(1, "none.bin");
    EXPECT_EQ(mark(), "");
}

} // namespace
