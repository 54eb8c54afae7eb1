#include "config/Paths.h"

#include "files/PrintableText.h"
#include "support/Rig.h"

namespace {

using zrk::Paths;

TEST(Paths, BothSeparators) {
    using Text = const char*;
    for (const auto& [separator, path, resolved, folder, name] :
         std::initializer_list<std::tuple<char, Text, Text, Text, Text>>{
             {'\\', R"(C:\boot\p.bin)", R"(C:\boot\p.bin)", R"(C:\boot\)", "p.bin"},
             {'\\', R"(\boot\p.bin)", R"(C:\tools\\boot\p.bin)", R"(C:\tools\\boot\)", "p.bin"},
             {'\\', "", R"(C:\tools\)", R"(C:\tools\)", ""},
             {'\\', "boot/p.bin", R"(C:\tools\boot/p.bin)", R"(C:\tools\)", "boot/p.bin"},
             {'/', R"(boot\sub\p.bin)", "/opt/zrk/boot/sub/p.bin", "/opt/zrk/boot/sub/", "p.bin"},
             {'/', "/srv/p.bin", "/srv/p.bin", "/srv/", "p.bin"},
             {'/', R"(/srv\img\p.bin)", "/srv/img/p.bin", "/srv/img/", "p.bin"},
             {'/', R"(\boot\p.bin)", "/opt/zrk//boot/p.bin", "/opt/zrk//boot/", "p.bin"},
             {'/', R"(C:\boot\p.bin)", R"(C:\boot\p.bin)", R"(C:\boot\)", "p.bin"},
             {'/', "", "/opt/zrk/", "/opt/zrk/", ""},
         }) {
        const Paths paths(separator == '/' ? "/opt/zrk" : R"(C:\tools)", QLatin1Char(separator));
        EXPECT_EQ(paths.ResolvePath(path), resolved);
        EXPECT_EQ(paths.FolderOf(resolved), folder);
        EXPECT_EQ(paths.FileNameOf(resolved), name);
    }
    EXPECT_EQ(Paths("C:\\", u'\\').joined("loader.INI"), "C:\\\\loader.INI");
    EXPECT_EQ(Paths("/x", u'/').FolderOf("p.bin"), "");
    EXPECT_EQ(Paths("/x", u'/').FileNameOf("p.bin"), "p.bin");
}

TEST(Paths, PrintedNamesHideNothing) {
    for (const auto& [name, shown] : std::initializer_list<std::pair<QString, const char*>>{
             {"boot 1.bin", "boot 1.bin"},
             {QStringLiteral("caf\u00E9 \u65E5\u3000\U0001F600"),
              "caf\xC3\xA9 \xE6\x97\xA5\xE3\x80\x80\xF0\x9F\x98\x80"},
             {"a\nSteps: \r\x1B[2J\x7F", "a^JSteps: ^M^[[2J^?"},
             {QStringLiteral("\u0085\u009B"), "\\x85\\x9B"},
             {QStringLiteral("a\u202Enib\u2066\u2028\u2029"), "a<U+202E>nib<U+2066><U+2028><U+2029>"},
             {QStringLiteral("a\u200B\u00AD\uFEFF\u3164\uFE0F\u00A0.b"),
              "a<U+200B><U+00AD><U+FEFF><U+3164><U+FE0F><U+00A0>.b"},
             {QStringLiteral("\U000E0041"), "<U+E0041>"},
             {QString(QChar(0xDC00)) + QChar(0xD83D), "<U+DC00><U+D83D>"},
         })
        EXPECT_EQ(zrk::printableText(name), QString::fromUtf8(shown));
}

TEST(Paths, FileExists) {
    zrktest::ScriptedRig b;
    EXPECT_TRUE(zrk::FileExists(b.bench.file("full", "x"), true));
    const QString empty = b.bench.file("empty", "");
    EXPECT_TRUE(zrk::FileExists(empty, false) && !zrk::FileExists(empty, true));
    for (const QString& path : {b.bench.folder.path(), QString("/sys/kernel/notes"),
                                QString("/sys/fs/cgroup/cgroup.procs"), QString("/sys/fs/cgroup/cpu/tasks"),
                                b.bench.folder.filePath("missing"), QString(), QString(QChar::Null)})
        EXPECT_FALSE(zrk::FileExists(path, false)) << path.toStdString();
    EXPECT_FALSE(zrk::FileExists("/proc/self/status", true)) << "not an image, but made to be read";
}

} // namespace
