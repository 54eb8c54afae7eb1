#include "app/AboutBox.h"
#include "app/SystemInfo.h"
#include "platform/ProgramStarter.h"
#include "platform/Registry.h"
#include "support/Rig.h"

#include <QLabel>
#include <QTest>

#include <map>

namespace {

using namespace zrktest;

struct FakeRegistry final : zrk::Registry {
    std::map<QString, zrk::RegistryValue> values; ///< by "root key\\value", the root in hexadecimal

    [[nodiscard]] std::optional<zrk::RegistryValue> query(std::uint32_t root, const QString& key,
                                                          const QString& value) const override {
        const auto found = values.find(QString::number(root, 16) + ' ' + key + '\\' + value);
        return found == values.end() ? std::nullopt : std::optional(found->second);
    }
};

struct FakeStarter final : zrk::ProgramStarter {
    bool works = true;
    QString started;

    [[nodiscard]] bool start(const QString& path) override {
        started = path;
        return works;
    }
};

class About : public ::testing::Test {
  protected:
    FakeRegistry registry;
    FakeStarter starter;
    VirtualEventLoop loop;
    RecordingBoxes boxes;
    FakeFileDialog fileDialog;
    zrk::Desk desk{loop, boxes, fileDialog};
    zrk::SystemInfo info{registry, starter, desk};
};

TEST_F(About, SystemInformationIsStartedFromWhereTheRegistrySays) {
    // A folder counts only if the program is in it; on this system it is a file with that odd name.
    QTemporaryDir folder;
    QFile program(folder.path() + "\\MSINFO32.EXE");
    info.StartSysInfo();
    registry.values["80000002 SOFTWARE\\Microsoft\\Shared Tools Location\\MSINFO"] = {
        1, folder.path().toLocal8Bit() + '\0'};
    info.StartSysInfo();
    EXPECT_EQ(starter.started, "");
    ASSERT_TRUE(program.open(QIODevice::WriteOnly));
    info.StartSysInfo();
    EXPECT_EQ(starter.started, program.fileName());
    program.remove();
    // The first entry goes before the second.
    registry.values["80000002 SOFTWARE\\Microsoft\\Shared Tools\\MSINFO\\PATH"] = {1, "C:\\info.exe"};
    info.StartSysInfo();
    EXPECT_EQ(starter.started, "C:\\info.exe");
    starter.works = false;
    EXPECT_EQ(boxes.shown.size(), 2) << "no entry, no program";
    info.StartSysInfo();
    EXPECT_EQ(boxes.shown.mid(2), QStringList("[] i System Information Is Unavailable At This Time"));
}

TEST_F(About, RegistryValuesAreReadAsText) {
    registry.values = {{"80000002 k\\text", {1, "plain"}},
                       {"80000002 k\\number", {4, QByteArray("\x34\x12\xAB\x0F", 4)}},
                       {"80000002 k\\binary", {3, "abc"}}};
    const std::tuple<const char*, bool, const char*> reads[] = {{"text", true, "plain"},
                                                                {"number", true, "&h0FAB1234"},
                                                                {"binary", true, "before"},
                                                                {"none", false, ""}};
    for (const auto& [value, found, expected] : reads) {
        QString text = "before";
        EXPECT_EQ(info.GetKeyValue(0x80000002, "k", value, text), found) << value;
        EXPECT_EQ(text, expected);
    }
}

TEST_F(About, TheBoxShowsTheVersionAndOffersSystemInformation) {
    zrk::AboutBox box(info, nullptr);
    EXPECT_EQ(box.windowTitle(), "About ZRK6924 Loader");
    EXPECT_EQ(box.findChild<QLabel*>("lblTitle")->text(), "ZRK6924 Loader");
    EXPECT_EQ(box.findChild<QLabel*>("lblVersion")->text(), "Version 0.7.34");
    EXPECT_EQ(box.findChild<QLabel*>("lblDescription")->text(),
              "See ZRK6957 Getting Started document for full description.");
    box.open();
    QTest::mouseClick(box.findChild<QWidget*>("cmdSysInfo"), Qt::LeftButton);
    EXPECT_EQ(boxes.shown.size(), 1);
    EXPECT_TRUE(box.isVisible());
    QTest::mouseClick(box.findChild<QWidget*>("cmdOK"), Qt::LeftButton);
    EXPECT_FALSE(box.isVisible());
}

} // namespace
