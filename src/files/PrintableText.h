#pragma once

#include <QString>

namespace zrk {

/// Returns the name in readable form: line ends and other control characters as signs such as "^J" or "\x9B",
/// invisible characters and those that change the direction of writing by their number, such as "<U+202E>".
/// The name of a file or device, or a text of an INI file, must not look like another one or like a line of
/// this program's.
[[nodiscard]] QString printableText(const QString& name);

/// Returns a path in printable form, followed by the path of the real file if links lead to another one.
[[nodiscard]] QString printableFile(const QString& path);

/// Returns the printable path of the real file if links in `path` lead to another one, else "".
[[nodiscard]] QString realFileBehindLinks(const QString& path);

} // namespace zrk
