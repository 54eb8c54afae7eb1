#include "config/IniFile.h"
#include "support/Rig.h"

#include <QStringEncoder>

namespace {

using namespace zrktest;

class Ini : public ScriptedTest {
  protected:
    void load(const QByteArray& text) {
        loader.state.IniPath = bench.file("loader.INI", text);
        loader.iniLoader.mnuLoadIni_Click();
    }

    /// Returns "ticked|name|path|tool tip|address|size", with the image folder as "~".
    [[nodiscard]] QString slot(std::size_t i) const {
        const zrk::Controls& c = loader.controls;
        const auto& name = c.txtFilNam[i];
        const QStringList texts{name.Text, name.Tag, name.ToolTipText, c.txtStartAddress[i].Text,
                                c.lblCodeSize[i].Caption};
        return QString::number(c.chkExeURK[i].Value)
            .append('|' + texts.join('|'))
            .replace(native(bench.folder.path()), "~");
    }
};

TEST_F(Ini, FoundMissingAndUnnamedFiles) {
    QDir(bench.folder.path()).mkdir("img");
    (void)bench.file("p.bin", QByteArray(5000, 'p'));
    (void)bench.file("img/k.bin", "k");
    (void)bench.file("empty.bin", "");
    (void)bench.file(" two .bin", "12");
    bench.fill(2, "kept", "0x80000100");
    const QString uboot = slot(2);

    load("[BINFILES]\r\nPRIMARY=p.bin,0x12345,ignored\r\nSECONDARY=none.bin,0x80000010\r\n"
         "FLASH=empty.bin,0x100\r\nPG_SIBL=img\\none\r\n"
         "[IMGFILES]\r\nUBOOT=\r\nROOTFS=,0x80000004\r\nKERNEL=img\\k.bin,  0x8000000c  \r\n");
    EXPECT_EQ(slot(0), native("1|p.bin|~/p.bin|Path: ~/|0x2345|0x1388"));
    EXPECT_EQ(slot(1), "0|CAN'T FIND: none.bin||File Not Found, check .INI file|0x80000004|");
    EXPECT_EQ(slot(2), uboot);
    EXPECT_EQ(slot(3), "0|CAN'T FIND: ||File Not Found, check .INI file|0x80000004|");
    EXPECT_EQ(slot(4), native("1|k.bin|~/img/k.bin|Path: ~/img/|0x8000000C|0x1"));
    EXPECT_EQ(slot(5), "0|CAN'T FIND: empty.bin||File Not Found, check .INI file|0x0000|");
    EXPECT_EQ(slot(6), "0|CAN'T FIND: none||File Not Found, check .INI file|0x80000004|");
    EXPECT_EQ(bench.buttons(), "1001");

    // Loaded again: named slots are overwritten, and slots that are no longer named stay.
    load("[binfiles]\nprimary = gone.bin\nSecondary=' two .bin'\n[IMGFILES]\nUBOOT=p.bin, no number\n");
    EXPECT_EQ(slot(0), "0|CAN'T FIND: gone.bin||File Not Found, check .INI file|0x0000|");
    EXPECT_EQ(slot(1), native("1| two .bin|~/ two .bin|Path: ~/|0x00000000|0x2"));
    EXPECT_EQ(slot(2), native("1|p.bin|~/p.bin|Path: ~/|0x0|0x1388"));
    EXPECT_EQ(slot(4), native("1|k.bin|~/img/k.bin|Path: ~/img/|0x8000000C|0x1"));
    EXPECT_EQ(bench.buttons(), "0001");

    load("[IMGFILES]\nUBOOT=none\nKERNEL=none\n");
    for (const std::size_t i : {2U, 4U})
        EXPECT_EQ(slot(i), "0|CAN'T FIND: none||File Not Found, check .INI file|0x80000004|");

    loader.state.IniPath = bench.folder.filePath("no.INI");
    loader.iniLoader.mnuLoadIni_Click();
    EXPECT_EQ(slot(1), native("1| two .bin|~/ two .bin|Path: ~/|0x00000000|0x2"));
    EXPECT_TRUE(bench.boxes.shown.isEmpty());

    loader.iniLoader.mnuWriteIni_Click();
    EXPECT_EQ(bench.boxes.shown.last(), "[Not yet implemented] i Not yet implemented. Please edit " +
                                            loader.state.IniPath + " yourselfes");
}

TEST_F(Ini, RemarksStayInTheStatusBarUntilAnOperationBegins) {
    (void)bench.file("p.bin", "p");
    const auto told = [this] {
        loop.runFor(250ms);
        return loader.controls.staStatus.FirstPanel.value().section(". Next: ", 0, 0);
    };
    const QString idle = told();
    for (const auto& [text, remark] : std::initializer_list<std::pair<QByteArray, const char*>>{
             {"; fine\n[binfiles]\nprimary=p.bin,0xFFFF\nFlash=none.bin,never read\n[IMGFILES]\n", ""},
             {"kernel=k\n[IMGFILES]\nPRIMARY=p.bin",
              "Line 1: the key kernel comes before the first section. "
              "Line 3: unknown key PRIMARY in [IMGFILES]; known are UBOOT, ROOTFS, KERNEL."},
             {"[BINFILE]\nPRIMARY=p.bin\n",
              "Line 1: unknown section [BINFILE]; known are [BINFILES] and [IMGFILES]."},
             {"[BINFILES\n", "Line 1: unknown section [[BINFILES]; known are [BINFILES] and [IMGFILES]."},
             {QByteArray("[\0B\0", 4), "The file is not readable text; save it as UTF-8."},
             {"[BINFILES]\nPG_SIBL=p.bin,0x10000",
              "PG_SIBL: 0x10000 does not fit into the IRAM, whose addresses go from 0x0000 to 0xFFFF."},
             {"[BINFILES]\nPG_SIBL=p.bin,-1",
              "PG_SIBL: -1 does not fit into the IRAM, whose addresses go from 0x0000 to 0xFFFF."},
             {"[BINFILES]\nPG_SIBL=gone.bin,0x10000", ""},
             {"[binfiles]\nFLASH=p.bin\nflash=p.bin\nX=\nx=\n[Other]\n[other]\n[BINFILES]\nPRIMRY=x\n["
              "IMGFILES]",
              "Line 3: a second flash in [binfiles]; only the first counts. "
              "Line 4: unknown key X in [binfiles]; known are PRIMARY, SECONDARY, FLASH, PG_SIBL. "
              "Line 5: unknown key x in [binfiles]; known are PRIMARY, SECONDARY, FLASH, PG_SIBL. "
              "Line 6: unknown section [Other]; known are [BINFILES] and [IMGFILES]. "
              "Line 7: unknown section [other]; known are [BINFILES] and [IMGFILES]. "
              "Line 8: a second section [BINFILES]; only the first counts."},
             {QByteArray("[BINFILES]\nPRIMARY=p.bin\n").leftJustified(1024 * 1024 + 1, ';'),
              "The file has more than 1 MiB and was not read; shorten it."},
             {"[BINFILES]\nFLASH=" + QByteArray(254, '/') + "p.bin",
              "FLASH: the value is too long and is cut after 254 characters."}}) {
        load(text);
        EXPECT_EQ(told(), *remark == '\0' ? idle : "loader.INI: " + QString(remark)) << text.toStdString();
    }
    EXPECT_TRUE(bench.boxes.shown.isEmpty());
    EXPECT_EQ(bench.console(), "");

    load("[BINFILE]");
    EXPECT_NE(told(), idle);
    loader.operation.begin();
    loader.operation.finish();
    EXPECT_EQ(told(), idle);
}

TEST_F(Ini, EndlessNamesAreReportedInFewWords) {
    load("[" + QByteArray(100'000, 'n') + "]\n[IMGFILES]\n" + QByteArray("X=\n").repeated(100'000) +
         "UBOOT=none");
    QString remark = "loader.INI: Line 1: unknown section [" + QString(60, 'n') +
                     "...]; known are [BINFILES] and [IMGFILES]. ";
    for (int line = 3; line <= 11; ++line)
        remark +=
            QString("Line %1: unknown key X in [IMGFILES]; known are UBOOT, ROOTFS, KERNEL. ").arg(line);
    EXPECT_EQ(loader.state.Remark.text, remark + "And 99991 more.");
    EXPECT_EQ(loader.controls.txtFilNam[2].Text.value(), "CAN'T FIND: none");
}

TEST_F(Ini, Values) {
    const QByteArray long254(254, 'v');
    const QByteArray text =
        "\xEF\xBB\xBF; Key=comment\nKey=before any section\n[Other]\nKey=other\n[ SECT ]\n"
        "# Key=comment\n Key = a b=c, d \nkey=second\nNoEquals\nBlank=   \n"
        "Quoted=\" x \"\nHalf=\"x\nLong=" +
        long254 + "vv\nName=caf\xC3\xA9\n[Sect]\nLate=never seen\n[Last]\rKey=last";
    const QString path = bench.file("values.ini", text);
    const std::initializer_list<std::tuple<const char*, const char*, QString>> values{
        {"Sect", "Key", "a b=c, d"},     {"Sect", "KEY", "a b=c, d"}, {"Sect", "Blank", ""},
        {"Sect", "Quoted", " x "},       {"Sect", "Half", "\"x"},     {"Sect", "Long", long254},
        {"Sect", "Name", "caf\xC3\xA9"}, {"Sect", "Late", ""},        {"Sect", "NoEquals", ""},
        {"last", "key", "last"},         {"missing", "key", ""}};
    for (const auto& [section, key, value] : values)
        EXPECT_EQ(zrk::GetIniValue(path, section, key), value) << key;
    EXPECT_EQ(zrk::GetIniValue(bench.file("latin", "[S]\nName=caf\xE9"), "S", "Name"), "caf\xC3\xA9");
    const auto codePage = [](const QByteArray& bytes) {
        return QString::fromLatin1(bytes).replace(QChar(0xE9), QChar(0x0439));
    };
    EXPECT_EQ(zrk::IniFile(bench.file("cyrillic", "[S]\nName=caf\xE9"), codePage).value("S", "Name").text,
              "caf\xD0\xB9");
    EXPECT_EQ(zrk::IniFile(path, codePage).value("Sect", "Name").text, "caf\xC3\xA9") << "it is UTF-8";
    const QString marked = QStringLiteral("\uFEFF[S]\r\nKey=caf\u00E9\r\n");
    for (const auto encoding : {QStringConverter::Utf8, QStringConverter::Utf16LE, QStringConverter::Utf16BE})
        EXPECT_EQ(zrk::GetIniValue(bench.file("marked", QStringEncoder(encoding)(marked)), "S", "Key"),
                  marked.mid(10, 4));
    EXPECT_EQ(zrk::GetIniValue(bench.folder.path(), "S", "Key"), "");
}

} // namespace
