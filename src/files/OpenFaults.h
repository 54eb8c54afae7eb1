#pragma once

#include <QString>

#include <system_error>

namespace zrk {

/// Returns the system's words for an error number.
[[nodiscard]] inline QString systemText(int error) {
    return QString::fromStdString(std::generic_category().message(error));
}

/// Says why no file can have this name; "" if one can.
[[nodiscard]] inline QString nameProblem(const QString& name) {
    return name.isEmpty() || name.contains(QChar::Null) // Qt would complain on standard error
               ? QStringLiteral("Its name is empty or contains a NUL character")
               : QString();
}

} // namespace zrk
