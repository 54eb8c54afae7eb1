#pragma once

#include <QByteArray>
#include <QString>

namespace zrk {

/// The content of an INI file or script, or why there is none.
struct TextFile {
    enum class Fault { None, NotOpened, NotRead, TooLong };

    /// Longer files are not read. What people write is far shorter, and a file out of an archive must not
    /// decide over the memory and the time that a program needs.
    static constexpr qint64 kMostBytes = qint64{1024} * 1024;

    QByteArray bytes;
    Fault fault = Fault::None;
    QString why; ///< part of a sentence
};

/// Reads a regular file whole. Never blocks on another process.
[[nodiscard]] TextFile readTextFile(const QString& path);

} // namespace zrk
