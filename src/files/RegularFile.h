#pragma once

#include <QFile>
#include <QString>

namespace zrk {

/// Whether the last part of a file's name may be a symbolic link.
enum class Links { Follow, Refuse };

// Both functions open `file` over a descriptor; from then on its fileName() is empty.

/// Opens the file for reading. Returns "", or why it was not opened, as a part of a sentence.
/// Only regular files on a disk are opened: a pipe would block, a device could act, and the files of the
/// kernel have no length. An empty name and one with a NUL are refused, too. Never blocks on another process.
[[nodiscard]] QString openForReading(QFile& file, Links links = Links::Follow);

/// The treatment of a record that exists.
enum class OldRecord { Empty, Continue };

/// Opens the file for writing a record, such as a trace or a log. Returns "", or why it was not opened, as a
/// part of a sentence; an existing file is then unchanged. Opens only a regular file, never a link: other
/// users of the folder must not decide where the board's output goes. A new file is for its owner alone,
/// since a record can hold passwords. The file is locked until it is closed, so that two runs do not write to
/// one record.
[[nodiscard]] QString openRecord(QFile& file, OldRecord old);

/// Appends to a record. Returns "", or the system's reason; the record then ends with a whole line.
[[nodiscard]] QString appendToRecord(QFile& file, const QByteArray& bytes);

} // namespace zrk
