#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QString>

namespace zrk {

/// Returns the text with every control character but line ends and tabs as a sign, such as "^[" for Escape:
/// neither a board nor a file must control the user's terminal.
[[nodiscard]] QString withVisibleControls(const QString& text);

/// Returns the object as one line without its end. Every control character in it is escaped, also those above
/// 0x7E, which JSON would allow; half a surrogate pair, which many readers reject, is replaced.
[[nodiscard]] QByteArray jsonLine(const QJsonObject& object);

} // namespace zrk
