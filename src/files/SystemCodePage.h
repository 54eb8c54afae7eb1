#pragma once

#include <QByteArray>
#include <QString>

namespace zrk {

/// Converts bytes that are not Unicode text.
using CodePage = QString (*)(const QByteArray& bytes);

/// Converts with the code page that Windows has for old programs, even if this program's own is UTF-8;
/// elsewhere, and where the system cannot convert the bytes, with Latin-1.
[[nodiscard]] QString systemCodePageText(const QByteArray& bytes);

} // namespace zrk
