#pragma once

#include "files/SystemCodePage.h"

#include <QList>
#include <QString>

#include <optional>

namespace zrk {

/// A line of the configuration file that begins a section or gives a key.
struct IniName {
    int line = 0;               ///< 1 for the first
    QString section;            ///< empty in front of the first section
    std::optional<QString> key; ///< none where a section begins
};

/// What the file names, in its order. `isText` is false when it holds characters that no text has.
struct IniNames {
    QList<IniName> names;
    bool isText = true;
};

[[nodiscard]] IniNames readIniNames(const QString& iniPath, CodePage codePage = systemCodePageText);

/// A value as the loader takes it.
struct IniValue {
    QString text;
    bool isCut = false; ///< the file holds a longer text
};

/// The value of a key, or "" when the file, the section or the key is missing.
///
/// Sections and keys match without regard to case; the first match counts. The value is the text
/// behind "=" without surrounding blanks, without a pair of quotes around the whole, and cut to 254
/// characters. Lines that begin with ";" or "#" are comments. The text is what its byte order mark
/// says; without one it is UTF-8, or `codePage` reads it where it is not valid UTF-8.
[[nodiscard]] IniValue readIniValue(const QString& iniPath, const QString& section, const QString& key,
                                    CodePage codePage = systemCodePageText);

/// The text of readIniValue().
[[nodiscard]] QString GetIniValue(const QString& iniPath, const QString& section, const QString& key);

} // namespace zrk
