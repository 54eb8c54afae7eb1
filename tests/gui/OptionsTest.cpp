#include "app/AppOptions.h"
#include "support/Rig.h"

namespace {

using namespace zrktest;

zrk::AppCommandLine read(const char* line) {
    return zrk::readCommandLine(QString::fromLatin1(line).split(' ', Qt::SkipEmptyParts));
}

TEST(AppOptions, DevicesAndTheIniFileAreTakenFromTheCommandLine) {
    const zrk::AppCommandLine none = read("zrk-loader");
    ASSERT_TRUE(none.options);
    EXPECT_TRUE(none.options->ports.empty());
    EXPECT_EQ(none.options->iniPath, "");

    const zrk::AppCommandLine all = read("zrk-loader --com 3=/dev/ttyUSB7 --com 8=/dev/x --port /dev/pts/4 "
                                         "--ini some/board.INI --line-rate 0");
    ASSERT_TRUE(all.options);
    const zrk::PortNames::Overrides expected{{1, "/dev/pts/4"}, {3, "/dev/ttyUSB7"}, {8, "/dev/x"}};
    EXPECT_EQ(all.options->ports, expected);
    EXPECT_EQ(all.options->lineRate, 0U);
    EXPECT_EQ(all.options->iniPath, QDir::currentPath() + "/some/board.INI");
    // A port that is named by another number.
    const zrk::AppCommandLine named = read("zrk-loader --com 3=/dev/ttyUSB7 --port COM3");
    ASSERT_TRUE(named.options);
    EXPECT_EQ(named.options->ports.at(1), "/dev/ttyUSB7");
}

TEST(AppOptions, QuestionsAndMistakesAreAnswered) {
    struct Case {
        const char* line;
        int status;
        const char* says;
    };
    for (const Case& c :
         {Case{"zrk-loader --help", 0, "--port <DEVICE>"}, Case{"zrk-loader --version", 0, "0.7.34"},
          Case{"zrk-loader --bogus", 2, "bogus"}, Case{"zrk-loader load", 2, "load"},
          Case{"zrk-loader --ini=", 2, "--ini"}, Case{"zrk-loader --port=", 2, "--port"},
          Case{"zrk-loader --com 9=/dev/x", 2, "9"}, Case{"zrk-loader --com x", 2, "x"}}) {
        const zrk::AppCommandLine answer = read(c.line);
        EXPECT_FALSE(answer.options) << c.line;
        EXPECT_EQ(answer.exitStatus, c.status) << c.line;
        EXPECT_TRUE(answer.message.contains(QLatin1String(c.says)))
            << c.line << ": " << answer.message.toStdString();
    }
}

} // namespace
