#pragma once

#include <QFile>
#include <QStringList>

#include <utility>

namespace zrk {

/// The treatment of a record that exists.
enum class OldRecord { Empty, Continue };

/// The file of a record, such as a trace or a log.
struct RecordFile {
    RecordFile(QString file, QStringList readFiles = {}, // a path alone is the file of a record
               OldRecord existing = OldRecord::Empty)
        : path(std::move(file)), inputs(std::move(readFiles)), old(existing) {}

    QString path;
    QStringList inputs; ///< files that the program reads, which the record would destroy
    OldRecord old;      ///< what FileWriter makes of a file that exists
};

/// The limit of a record in bytes. A board or a serial server can flood the line for days, and a full disk
/// stops other programs.
constexpr qint64 kLongestRecord = qint64{1} << 30;

// Only a regular file becomes a record, never a link: other users of the folder must not decide where the
// board's output goes. It is not one of the inputs under any name, not a file of another account, and not a
// record that is being written. If the system has permissions, it is for its owner alone from now on, since a
// record can hold passwords; the system locks it until it is closed (not on Windows). All functions return
// "", or why the file cannot be used, as a part of a sentence.

/// Opens the file for writing. A file that existed is unchanged if it is refused. The file's fileName() is
/// empty then.
[[nodiscard]] QString openRecord(QFile& file, const RecordFile& record, OldRecord old);

/// Returns what openRecord() would refuse, without making or changing anything.
[[nodiscard]] QString recordProblem(const RecordFile& record);

/// Writes the file at once: afterwards it has all bytes or its former content.
[[nodiscard]] QString replaceRecord(const RecordFile& record, const QByteArray& bytes);

/// Appends to an open record of at most `longest` bytes; it then ends with a whole line.
[[nodiscard]] QString appendToRecord(QFile& file, const QByteArray& bytes, qint64 longest = kLongestRecord);

} // namespace zrk
