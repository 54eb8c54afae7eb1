#include "config/Paths.h"

#include "support/Rig.h"

#include <QDir>

namespace {

using zrk::Paths;

TEST(Paths, BothSeparators) {
    struct Row {
        char separator;
        const char* path;
        const char* resolved;
        const char* folder;
        const char* name;
    };
    for (const Row& row : std::initializer_list<Row>{
             {'\\', R"(C:\boot\p.bin)", R"(C:\boot\p.bin)", R"(C:\boot\)", "p.bin"},
             {'\\', R"(boot\p.bin)", R"(C:\tools\boot\p.bin)", R"(C:\tools\boot\)", "p.bin"},
             {'\\', R"(\boot\p.bin)", R"(C:\tools\\boot\p.bin)", R"(C:\tools\\boot\)", "p.bin"},
             {'\\', "p", R"(C:\tools\p)", R"(C:\tools\)", "p"},
             {'\\', "", R"(C:\tools\)", R"(C:\tools\)", ""},
             {'\\', "boot/p.bin", R"(C:\tools\boot/p.bin)", R"(C:\tools\)", "boot/p.bin"},
             {'/', "boot/p.bin", "/opt/zrk/boot/p.bin", "/opt/zrk/boot/", "p.bin"},
             {'/', R"(boot\sub\p.bin)", "/opt/zrk/boot/sub/p.bin", "/opt/zrk/boot/sub/", "p.bin"},
             {'/', "/srv/p.bin", "/srv/p.bin", "/srv/", "p.bin"},
             {'/', R"(/srv\img\p.bin)", "/srv/img/p.bin", "/srv/img/", "p.bin"},
             {'/', R"(\boot\p.bin)", "/opt/zrk//boot/p.bin", "/opt/zrk//boot/", "p.bin"},
             {'/', R"(C:\boot\p.bin)", R"(C:\boot\p.bin)", R"(C:\boot\)", "p.bin"},
             {'/', "", "/opt/zrk/", "/opt/zrk/", ""},
         }) {
        const Paths paths(row.separator == '/' ? "/opt/zrk" : R"(C:\tools)", QLatin1Char(row.separator));
        const QString resolved = paths.ResolvePath(row.path);
        EXPECT_EQ(resolved, row.resolved);
        EXPECT_EQ(paths.FolderOf(resolved), row.folder);
        EXPECT_EQ(paths.FileNameOf(resolved), row.name);
    }
    EXPECT_EQ(Paths("C:\\", u'\\').joined("loader.INI"), "C:\\\\loader.INI");
    EXPECT_EQ(Paths("/x", u'/').FolderOf("p.bin"), "");
    EXPECT_EQ(Paths("/x", u'/').FileNameOf("p.bin"), "p.bin");
}

TEST(Paths, FileExists) {
    zrktest::ScriptedRig b;
    EXPECT_TRUE(zrk::FileExists(b.bench.file("full", "x"), true));
    EXPECT_TRUE(zrk::FileExists(b.bench.file("empty", ""), false));
    EXPECT_FALSE(zrk::FileExists(b.bench.file("empty", ""), true));
    for (const QString& path : {b.bench.folder.path(), b.bench.folder.filePath("missing"), QString()})
        EXPECT_FALSE(zrk::FileExists(path, false)) << path.toStdString();
}

} // namespace
