#include "config/Paths.h"

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

TEST(Paths, FileExists) {
    zrktest::ScriptedRig b;
    EXPECT_TRUE(zrk::FileExists(b.bench.file("full", "x"), true));
    const QString empty = b.bench.file("empty", "");
    EXPECT_TRUE(zrk::FileExists(empty, false) && !zrk::FileExists(empty, true));
    for (const QString& path : {b.bench.folder.path(), QString("/sys/kernel/notes"),
                                b.bench.folder.filePath("missing"), QString(), QString(QChar::Null)})
        EXPECT_FALSE(zrk::FileExists(path, false)) << path.toStdString();
    EXPECT_FALSE(zrk::FileExists("/proc/self/status", true))
        << "no image, but something that is made to be read";
}

} // namespace
