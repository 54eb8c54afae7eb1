#include "config/IniFile.h"
#include "fuzz/LoaderUnderFuzz.h"

#include <QRegularExpression>
#include <QStringDecoder>

// Input: an INI file.

namespace {

using namespace zrkfuzz;

constexpr qsizetype kMostOfAValue = 254;
const char* const kKeys[]{"PRIMARY", "SECONDARY", "FLASH", "PG_SIBL", "UBOOT", "ROOTFS", "KERNEL"};

QStringList valuesOf(const QString& path) {
    QStringList values;
    for (const char* section : {"BINFILES", "IMGFILES"}) {
        for (const char* key : kKeys)
            values += zrk::GetIniValue(path, section, key);
    }
    return values;
}

void checkValues(const QStringList& values, const QString& path) {
    for (const QString& value : values) {
        require(value.size() <= kMostOfAValue, "a value is cut");
        require(!value.contains('\n') && !value.contains('\r'), "a value is of one line");
    }
    require(zrk::GetIniValue(path, "binfiles", "primary") == values.first(), "case does not matter");
}

void checkNames(const zrk::IniFile& file) {
    int line = 0;
    for (const zrk::IniEntry& name : file.entries()) {
        require(name.line > line, "names come in the order of their lines");
        line = name.line;
    }
}

/// Checks that the same text with any other line ends has the same values.
void checkLineEnds(const QByteArray& bytes, const QStringList& values, qsizetype names) {
    if (QStringConverter::encodingForData(bytes))
        return;
    QByteArray plain = bytes;
    plain.replace("\r\n", "\n").replace('\r', '\n');
    static constexpr const char* kEnds[]{"\n", "\r", "\r\n"};
    const char* end = kEnds[static_cast<std::size_t>(bytes.size()) % std::size(kEnds)];
    const QString path = writeFile("ends.ini", plain.replace("\n", end));
    require(valuesOf(path) == values, "line ends make no difference");
    require(zrk::IniFile(path).entries().size() == names, "nor to the names");
}

void checkSlots(const zrk::Loader& loader) {
    static const QRegularExpression kEntered(QStringLiteral("^0x([0-9A-F]{4}|[0-9A-F]{8}|0)$"));
    for (std::size_t slot = 0; slot < 7; ++slot) {
        const auto& controls = loader.controls;
        require(!controls.chkExeURK[slot].isTicked() || !controls.txtFilNam[slot].Tag.value().isEmpty(),
                "a slot without a file is not selected");
        const QString address = controls.txtStartAddress[slot].Text;
        require(address.isEmpty() || kEntered.match(address).hasMatch(), "addresses are entered", address);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QByteArray bytes(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    const QString path = writeFile("fuzz.ini", bytes);
    writeFile("a", "image"); // one that is there
    const QStringList values = valuesOf(path);
    checkValues(values, path);
    const zrk::IniFile file(path);
    checkNames(file);
    checkLineEnds(bytes, values, file.entries().size());
    LoaderUnderFuzz under;
    under.loader.iniLoader.openIni(path);
    checkSlots(under.loader);
    (void)under.loader.iniLoader.remarks();
    return 0;
}
