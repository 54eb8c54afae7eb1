#pragma once

#include <QString>

namespace zrk {

/// A name as one that can be read: line ends and other control characters as signs such as "^J" or "\x9B",
/// characters that are invisible or change the direction of writing by their number, such as "<U+202E>". A
/// name of a file or device, or a text out of an INI file, must not look like another one or like a line of
/// the program's.
[[nodiscard]] QString printableText(const QString& name);

/// A path in printable form, followed by the path of the real file where links lead to another one.
[[nodiscard]] QString printableFile(const QString& path);

/// The printable path of the real file where links in `path` lead to another one, else "".
[[nodiscard]] QString realFileBehindLinks(const QString& path);

} // namespace zrk
