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
    mutable QStringList asked;

    [[nodiscard]] std::optional<zrk::RegistryValue> query(std::uint32_t root, const QString& key,
                                                          const QString& value) const override {
        asked += QStringLiteral("%1 %2\\%3").arg(root, 0, 16).arg(key, value);
        const auto found = values.find(asked.last());
        return found == values.end() ? std::nullopt : std::optional(found->second);
    }
};

struct FakeStarter final : zrk::ProgramStarter {
    bool works = true;
    QStringList started;

    [[nodiscard]] bool start(const QString& path) override {
        started += path;
        return works;
    }
};

const QString kPath = QStringLiteral("80000002 SOFTWARE\\Microsoft\\Shared Tools\\MSINFO\\PATH");
const QString kFolder = QStringLiteral("80000002 SOFTWARE\\Microsoft\\Shared Tools Location\\MSINFO");

class About : public ::testing::Test {
  protected:
    FakeRegistry registry;
    FakeStarter starter;
    VirtualEventLoop loop;
    RecordingBoxes boxes;
    FakeFileDialog fileDialog;
    zrk::Desk desk{loop, boxes, fileDialog};
    zrk::SystemInfo info{registry, starter, desk};
    const QString unavailable = QStringLiteral("[] i System Information Is Unavailable At This Time");
};

TEST_F(About, SystemInformationIsStartedFromWhereTheRegistrySays) {
    info.StartSysInfo();
    EXPECT_EQ(boxes.shown, QStringList{unavailable}) << "no entry";
    EXPECT_EQ(desk.state.MessageText, "System Information Is Unavailable At This Time");
    EXPECT_EQ(registry.asked, QStringList({kPath, kFolder})) << "each once";
    // A folder counts only when the program is in it; on this system the file is one with that odd name.
    QTemporaryDir folder;
    registry.values[kFolder] = {1, folder.path().toLocal8Bit() + '\0'};
    info.StartSysInfo();
    EXPECT_EQ(boxes.shown.size(), 2);
    EXPECT_TRUE(starter.started.isEmpty());
    QFile program(folder.path() + QStringLiteral("\\MSINFO32.EXE"));
    ASSERT_TRUE(program.open(QIODevice::WriteOnly));
    info.StartSysInfo();
    EXPECT_EQ(starter.started, QStringList{program.fileName()});
    program.remove();
    // The first entry goes before the second.
    registry.values[kPath] = {1, QByteArray("C:\\Program Files\\info.exe\0", 26)};
    info.StartSysInfo();
    EXPECT_EQ(starter.started.last(), "C:\\Program Files\\info.exe");
    EXPECT_EQ(boxes.shown.size(), 2);
    starter.works = false;
    info.StartSysInfo();
    EXPECT_EQ(boxes.shown.size(), 3);
}

TEST_F(About, RegistryValuesAreReadAsText) {
    registry.values[QStringLiteral("80000002 k\\text")] = {1, "plain"};
    registry.values[QStringLiteral("80000002 k\\number")] = {4, QByteArray("\x34\x12\xAB\x0F", 4)};
    registry.values[QStringLiteral("80000002 k\\binary")] = {3, "abc"};
    const auto read = [this](const char* value) {
        QString text = QStringLiteral("before");
        const bool found =
            info.GetKeyValue(0x80000002, QStringLiteral("k"), QString::fromLatin1(value), text);
        return (found ? QStringLiteral("yes ") : QStringLiteral("no ")) + text;
    };
    EXPECT_EQ(read("text"), "yes plain");
    EXPECT_EQ(read("number"), "yes &h0FAB1234");
    EXPECT_EQ(read("binary"), "yes before");
    EXPECT_EQ(read("missing"), "no ");
}

TEST_F(About, TheBoxTellsTitleAndVersionAndOffersSystemInformation) {
    for (int time = 0; time < 2; ++time) {
        zrk::AboutBox box(info, nullptr);
        const auto text = [&box](const char* name) {
            return box.findChild<QLabel*>(QLatin1String(name))->text();
        };
        EXPECT_EQ(box.windowTitle(), "About ZRK6924 Loader");
        EXPECT_EQ(text("lblTitle"), "ZRK6924 Loader");
        EXPECT_EQ(text("lblVersion"), "Version 0.7.34");
        EXPECT_EQ(text("lblDescription"), "See ZRK6957 Getting Started document for full description.");
        EXPECT_FALSE(text("lblDisclaimer").isEmpty());
        box.open();
        QTest::mouseClick(box.findChild<QWidget*>(QStringLiteral("cmdSysInfo")), Qt::LeftButton);
        EXPECT_EQ(boxes.shown.size(), time + 1);
        EXPECT_TRUE(box.isVisible());
        QTest::mouseClick(box.findChild<QWidget*>(QStringLiteral("cmdOK")), Qt::LeftButton);
        EXPECT_FALSE(box.isVisible());
    }
}

} // namespace
