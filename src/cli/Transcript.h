#pragma once

#include "controls/ConsoleText.h"
#include "files/Record.h"

#include <QByteArray>
#include <QFile>
#include <QString>

namespace zrk {

/// A file with all that a session prints. Each line begins with the local time at which it began, with its
/// offset from UTC, and with its source: "*" is the program, "|" the board, whose control characters are
/// signs. So the board cannot write a line of the program's; within one, the program shows single answers of
/// the board. A full disk, or a board that has flooded the file, ends only the transcript.
class Transcript {
  public:
    explicit Transcript(QString path, qint64 longest = kLongestRecord);

    /// Makes the folder and appends earlier and later output to the file. Until then nothing is made or
    /// changed. Throws RuntimeFailure (File) if the file cannot be written, for example because it is an
    /// input.
    void begin(const QStringList& inputs);

    void write(const QString& text, TextOrigin origin);

    /// Writes the program's text in lines of its own.
    void writeMessage(const QString& text);

    /// Returns the failure once; "" if there is none.
    [[nodiscard]] QString takeFailure();

  private:
    void put(const QByteArray& lines);

    QString m_path; ///< a QFile over a descriptor does not have it
    qint64 m_longest;
    QFile m_file;
    QByteArray m_early; ///< what came before begin()
    bool m_hasBegun = false;
    QString m_failure;
    bool m_lineBegins = true;
    TextOrigin m_lineOrigin = TextOrigin::Loader;
};

} // namespace zrk
