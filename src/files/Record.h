#pragma once

#include <QFile>
#include <QStringList>

#include <utility>

namespace zrk {

/// What becomes of a record that exists.
enum class OldRecord { Empty, Continue };

/// The file of a record, such as a trace or a log.
struct RecordFile {
    RecordFile(QString file, QStringList readFiles = {}) // a path alone is the file of a record
        : path(std::move(file)), inputs(std::move(readFiles)) {}

    QString path;
    QStringList inputs; ///< files that the program reads, which the record would destroy
};

/// A record has no more bytes than this. A board or a serial server can flood the line for days, and a full
/// disk stops other programs.
constexpr qint64 kLongestRecord = qint64{1} << 30;

// Only a regular file becomes a record, and a link never does: who may write to the folder must not decide
// where the board's words go. It is not one of the inputs under any name, no file of another account, and no
// record that is being written. Where the system has permissions, it is for its owner alone from now on,
// since a record can hold passwords; the system locks it until it is closed (not on Windows).
// All functions return "", or why the file cannot be used, as a part of a sentence.

/// Opens the file for writing. A file that existed is unchanged if it is refused. The file's fileName() is
/// empty then.
[[nodiscard]] QString openRecord(QFile& file, const RecordFile& record, OldRecord old);

/// Finds what openRecord() would refuse, without making or changing anything.
[[nodiscard]] QString recordProblem(const RecordFile& record);

/// Writes the file at once: it has all bytes, or what it had before.
[[nodiscard]] QString replaceRecord(const RecordFile& record, const QByteArray& bytes);

/// Writes at the end of an open record of at most `longest` bytes; it then ends with a whole line.
[[nodiscard]] QString appendToRecord(QFile& file, const QByteArray& bytes, qint64 longest = kLongestRecord);

} // namespace zrk
