#include "loader/ThisProgram.h"
#include "support/Rig.h"

namespace {

using namespace zrktest;

class StartUpTest : public ScriptedTest {
  protected:
    /// Starts the program in the bench's folder.
    void load() {
        started.emplace(zrk::LoaderSurroundings{loop, port, bench.boxes, bench.fileDialog, bench.waitDialog},
                        native(bench.folder.path()));
        started->controls.txtStatus.append("old");
        started->state.CancelRequested = true;
        const zrk::ProgramFacts facts{native(bench.folder.path()), "loader", 0, 7, 34};
        started->startUp.Form_Load(facts, zrk::chooseIni({}, facts).path);
    }

    std::optional<zrk::Loader> started;
};

TEST_F(StartUpTest, WithoutAnIniFileOrWithAnEmptyOne) {
    for (int round = 0; round < 2; ++round) {
        bench.boxes.shown.clear();
        load();
        EXPECT_EQ(bench.boxes.shown,
                  QStringList("[No file] i No INI File found. Expect " +
                              native(bench.folder.path() + "/loader.INI") + "\nDefault values are NOT set!"));
        const zrk::Controls& c = started->controls;
        EXPECT_EQ(c.lblHeader.Caption.value(), "ZRK6957 loader, V0.7 (rev 34)");
        ASSERT_EQ(c.cmbComPort.List.value().size(), 8);
        for (int i = 0; i < 8; ++i) {
            EXPECT_EQ(c.cmbComPort.List.value()[i].text, QStringLiteral("COM%1:").arg(i + 1));
            EXPECT_EQ(c.cmbComPort.List.value()[i].itemData, i + 1);
        }
        EXPECT_EQ(c.cmbComPort.ListIndex, 0);
        EXPECT_EQ(started->state.SlotNames,
                  (std::array<QString, 8>{"", "Secondary Executable", "UBoot image", "Root FS image",
                                          "Kernel image", "UBoot marker (0x80000000)",
                                          "UBoot marker (0x82000000)", "maximum address"}));
        EXPECT_EQ(c.txtStatus.text(), "");
        EXPECT_FALSE(started->state.CancelRequested || started->state.DebugMode ||
                     started->state.TerminalMode);
        EXPECT_FALSE(c.cmdStartPrimary.Enabled || c.cmdURK.Enabled || c.cmdStartSecondary.Enabled);
        EXPECT_TRUE(c.cmdPrgFlash.Enabled && c.cmdTerminal.Enabled && c.cmbComPort.Enabled);
        EXPECT_FALSE(c.mnuExecScript.Enabled);
        EXPECT_EQ(c.lblState.Caption.value(), "Closed...");
        started.reset();
        (void)bench.file("loader.INI", ""); // an empty one counts as missing
    }
}

TEST_F(StartUpTest, WithAnIniFile) {
    (void)bench.file("p.bin", "12345");
    (void)bench.file("loader.INI", "[BINFILES]\nPRIMARY=p.bin,0x10\n");
    load();
    EXPECT_TRUE(bench.boxes.shown.isEmpty());
    EXPECT_EQ(started->controls.txtStartAddress[0].Text.value(), "0x0010");
    EXPECT_TRUE(started->controls.chkExeURK[0].isTicked() && started->controls.cmdStartPrimary.Enabled);
    EXPECT_EQ(started->state.IniPath, native(bench.folder.path() + "/loader.INI"));

    // Wherever the INI file lies, the first dialog begins in the program's folder.
    const zrk::ProgramFacts installed{native("/opt/loader"), "loader", 0, 7, 34};
    started->startUp.Form_Load(installed, started->state.IniPath);
    started->fileChoice.cmdBrowse_Click(5);
    started->controls.mnuExecScript.Enabled = true;
    started->script.mnuExecScript_Click();
    ASSERT_EQ(bench.fileDialog.requests.size(), 2);
    for (const zrk::FileRequest& request : bench.fileDialog.requests)
        EXPECT_EQ(request.folder, native("/opt/loader"));
}

TEST(ChooseIniTest, LooksBesideTheProgramThenInTheUsersFolder) {
    const QTemporaryDir folder;
    const QString beside = native(folder.filePath("bin"));
    const QString ofUser = native(folder.filePath("config"));
    const QString option = native(folder.filePath("rack/board.INI"));
    const struct {
        QByteArray beside, ofUser;
        bool hasConfigFolder;
        QString option, expected;
    } cases[] = {
        {"[BINFILES]", "[BINFILES]", true, "", beside},
        {"", "[BINFILES]", true, "", ofUser}, // an empty one counts as missing
        {"", "", true, "", beside},           // the message then names this one
        {"", "[BINFILES]", false, "", beside},
        {"[BINFILES]", "[BINFILES]", true, option, native(folder.filePath("rack"))},
    };
    for (const auto& one : cases) {
        for (const auto& [where, content] : {std::pair{beside, one.beside}, std::pair{ofUser, one.ofUser}}) {
            QFile file(where + "/loader.INI");
            ASSERT_TRUE(QDir().mkpath(where) && file.open(QIODevice::WriteOnly));
            file.write(content);
        }
        const zrk::ProgramFacts facts{beside, "loader", 0, 7, 34, one.hasConfigFolder ? ofUser : QString()};
        const zrk::IniChoice choice = zrk::chooseIni(one.option, facts);
        EXPECT_EQ(choice.folder, one.expected);
        EXPECT_EQ(choice.path, one.option.isEmpty() ? native(one.expected + "/loader.INI") : option);
        const bool bothEmpty = one.beside.isEmpty() && one.ofUser.isEmpty();
        EXPECT_EQ(choice.alsoSought, bothEmpty ? native(ofUser + "/loader.INI") : QString());
    }
}

} // namespace
