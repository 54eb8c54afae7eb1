#pragma once

#include <QString>

namespace zrk {

/// The value of a key, or "" when the file, the section or the key is missing.
///
/// Sections and keys match without regard to case; the first match counts. The value is the text
/// behind "=" without surrounding blanks, without a pair of quotes around the whole, and cut to 254
/// characters. Lines that begin with ";" or "#" are comments. The text is UTF-8, or Latin-1 where it
/// is not valid UTF-8.
[[nodiscard]] QString GetIniValue(const QString& iniPath, const QString& section, const QString& key);

} // namespace zrk
