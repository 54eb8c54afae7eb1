#pragma once

#include <QFile>
#include <QString>

namespace zrk {

/// Whether the last part of a file's name may be a symbolic link.
enum class Links { Follow, Refuse };

/// Opens the file for reading, over a descriptor; from then on its fileName() is empty. Returns "", or why it
/// was not opened, as a part of a sentence.
/// Only regular files on a disk are opened: a pipe would block, a device could act, and the files of the
/// kernel have no length. An empty name and one with a NUL are refused, too. Never blocks on another process.
[[nodiscard]] QString openForReading(QFile& file, Links links = Links::Follow);

} // namespace zrk
