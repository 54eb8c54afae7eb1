#pragma once

#include <QString>

namespace zrk {

/// Returns why a file that the user has named cannot be used, as a part of a sentence: "no such file or
/// directory", "permission denied", "it is a folder", "it is empty"; "" if it can.
[[nodiscard]] QString fileProblem(const QString& path);

/// The parts of "FILE[,ADDRESS]". A file that exists under the whole text goes first; otherwise the last
/// comma separates.
struct GivenFile {
    QString path;
    QString address; ///< "0" where none is given

    [[nodiscard]] static GivenFile parse(const QString& value);
};

} // namespace zrk
