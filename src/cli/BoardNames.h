#pragma once

#include <QList>
#include <QString>
#include <QStringList>

namespace zrk {

/// A value of --port: "LABEL=DEVICE" or "DEVICE".
struct NamedPort {
    QString label; ///< "" without one
    QString device;
};

/// Splits a value of --port. A file of that name is a device, whatever its name contains; so is a value with
/// "/", "\" or ":" in front of the first "=". Throws UsageError for a label with other characters than
/// letters, digits, ".", "_" and "-", or with more than 32.
[[nodiscard]] NamedPort readNamedPort(const QString& value);

/// Returns a name for each board, for lines and files: its label, or else the shortest form of its device
/// that no other board of the run has. Ignores letter case, since files are named so.
[[nodiscard]] QStringList boardNames(const QList<NamedPort>& ports);

} // namespace zrk
