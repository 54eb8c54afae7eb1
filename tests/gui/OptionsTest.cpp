#include "app/AppOptions.h"
#include "support/Rig.h"

namespace {

using namespace zrktest;

zrk::AppCommandLine read(const QString& options) {
    return zrk::readCommandLine(QString("zrk-loader " + options).split(' ', Qt::SkipEmptyParts));
}

TEST(AppOptions, DevicesAndTheIniFileAreTakenFromTheCommandLine) {
    const auto none = read("").options.value();
    EXPECT_TRUE(none.ports.empty());
    EXPECT_EQ(none.iniPath, "");
    const auto all = read("--com 3=/dev/ttyUSB7 --com 8=/dev/x --port /dev/pts/4 --ini some/board.INI "
                          "--line-rate 0")
                         .options.value();
    EXPECT_EQ(all.ports, (zrk::PortNames::Overrides{{1, "/dev/pts/4"}, {3, "/dev/ttyUSB7"}, {8, "/dev/x"}}));
    EXPECT_EQ(all.lineRate, 0U);
    EXPECT_EQ(all.iniPath, QDir::currentPath() + "/some/board.INI");
    // A port that is named by another number.
    EXPECT_EQ(read("--com 3=/dev/ttyUSB7 --port COM3").options.value().ports.at(1), "/dev/ttyUSB7");
}

TEST(AppOptions, QuestionsAndMistakesAreAnswered) {
    const std::tuple<const char*, int, const char*> lines[] = {
        {"--help", 0, "--port <DEVICE>"}, {"--version", 0, "0.7.34"},
        {"--bogus", 2, "bogus"},          {"load", 2, "load"},
        {"--ini=", 2, "--ini"},           {"--com 9=/dev/x", 2, "9"}};
    for (const auto& [line, status, says] : lines) {
        const zrk::AppCommandLine answer = read(line);
        EXPECT_FALSE(answer.options) << line;
        EXPECT_EQ(answer.exitStatus, status) << line;
        EXPECT_TRUE(answer.message.contains(says)) << line << ": " << answer.message.toStdString();
    }
}

} // namespace
