#pragma once

#include <QByteArray>
#include <QString>

namespace zrk {

// A record that several runs continue at the same time, each with whole lines. Only a regular file becomes
// one, and a link never does. A new file is for its owner alone.
// The functions return "", or why the file cannot be used, as a part of a sentence.

/// Appends the line as a whole, or leaves the file as it was; the line is on the disk then. An empty line
/// only makes and checks the file. Blocks while other runs append, ten seconds at most.
[[nodiscard]] QString appendToShared(const QString& path, const QByteArray& line);

/// Finds what appendToShared() would refuse, without making or changing anything.
[[nodiscard]] QString sharedRecordProblem(const QString& path);

} // namespace zrk
