#pragma once

#include <QFile>
#include <QString>

namespace zrk {

/// A file with all that a session printed, each line behind the time at which it began. A disk that is full
/// ends the transcript and nothing else.
class Transcript {
  public:
    /// Appends to the file. Throws RuntimeFailure (File) when it cannot be opened.
    explicit Transcript(const QString& path);

    void write(const QString& text);

    /// What is no text of console and board: in lines of its own, each marked.
    void writeMessage(const QString& text);

    /// What went wrong, told once; "" for nothing.
    [[nodiscard]] QString takeFailure();

  private:
    QString m_path; ///< a QFile over a descriptor has none
    QFile m_file;
    QString m_failure;
    bool m_lineBegins = true;
};

} // namespace zrk
