#pragma once

#include <QByteArray>
#include <QString>

namespace zrk {

/// The content of an INI file or script, or why it could not be read.
struct TextFile {
    enum class Fault { None, NotOpened, NotRead, TooLong };

    /// Longer files are not read. Written files are far shorter, and a file from an archive must not decide
    /// how much memory and time a program needs.
    static constexpr qint64 kMostBytes = qint64{1024} * 1024;

    QByteArray bytes;
    Fault fault = Fault::None;
    QString why; ///< part of a sentence
};

/// Reads a regular file whole. Never blocks on another process.
[[nodiscard]] TextFile readTextFile(const QString& path);

} // namespace zrk
