#pragma once

#include <QByteArray>
#include <QString>

namespace zrk {

/// Reads bytes that are no Unicode text.
using CodePage = QString (*)(const QByteArray& bytes);

/// On Windows the text in the code page that the system has for old programs, also where this program's own
/// is UTF-8; elsewhere, and where the system cannot convert the bytes, Latin-1.
[[nodiscard]] QString systemCodePageText(const QByteArray& bytes);

} // namespace zrk
