#include "config/IniText.h"

#include "config/Paths.h"
#include "controls/Controls.h"
#include "files/PrintableText.h"
#include "platform/RuntimeFailure.h"

#include <algorithm>

namespace zrk {
namespace {

constexpr qsizetype kMostOfValue = 254; // what is read of one

QString pathWithin(const QString& folder, const QString& path) {
    const QString relative = QDir(folder).relativeFilePath(QDir::fromNativeSeparators(path));
    return QDir::isAbsolutePath(relative) || relative.startsWith(QLatin1String(".."))
               ? path
               : QDir::toNativeSeparators(relative);
}

/// Returns whether the loader reads the same path back.
bool isReadBack(const QString& inFile, const QString& path, const QString& folder) {
    const auto isOneLine = std::none_of(inFile.cbegin(), inFile.cend(), [](QChar c) {
        return c == QLatin1Char(',') || c == QLatin1Char('\n') || c == QLatin1Char('\r');
    });
    return isOneLine && inFile == inFile.trimmed() &&
           Paths(QDir::toNativeSeparators(folder)).ResolvePath(inFile) == path;
}

QString valueOf(const Controls& controls, std::size_t slot, const QString& folder) {
    const QString path = controls.txtFilNam[slot].Tag;
    const QString inFile = pathWithin(folder, path);
    QString value = QStringLiteral("%1,%2").arg(inFile, controls.txtStartAddress[slot].Text.value());
    if (!isReadBack(inFile, path, folder) || value.size() > kMostOfValue)
        throw RuntimeFailure(
            FailureKind::InvalidArgument,
            QStringLiteral(
                "%1: an INI file cannot hold the path %2. It must have no comma, backslash, line end "
                "or blank at an end, and at most %3 characters with the address: rename or move the "
                "file. Nothing has been written.")
                .arg(controls.slotTitle(slot), printableText(path), QString::number(kMostOfValue)));
    return value;
}

} // namespace

QString iniTextOf(const Controls& controls, const QString& folder) {
    QString text;
    for (const char* section : {"BINFILES", "IMGFILES"}) {
        text += QStringLiteral("[%1]\n").arg(QLatin1String(section));
        for (std::size_t slot = 0; slot < kSlots.size(); ++slot) {
            if (QLatin1String(kSlots[slot].section) == QLatin1String(section) &&
                !controls.txtFilNam[slot].Tag.value().isEmpty())
                text += QStringLiteral("%1=%2\n").arg(QLatin1String(kSlots[slot].key),
                                                      valueOf(controls, slot, folder));
        }
    }
    return text;
}

} // namespace zrk
