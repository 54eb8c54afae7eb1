#pragma once

#include <QByteArray>
#include <QString>
#include <QTemporaryDir>

/// A named pipe that is full, so that every write to it blocks until the test reads. Waits for up to ten
/// minutes, then throws a std::runtime_error.
class FullPipe {
  public:
    FullPipe();
    ~FullPipe();
    FullPipe(const FullPipe&) = delete;
    FullPipe& operator=(const FullPipe&) = delete;

    [[nodiscard]] QString path() const { return m_folder.filePath("pipe"); }
    [[nodiscard]] int writingEnd() const { return m_writer; }
    void closeReadingEnd();

    /// Reads up to the end of this text and returns what came since the pipe was full.
    [[nodiscard]] QByteArray readUntil(const QByteArray& text);

  private:
    QTemporaryDir m_folder;
    int m_reader = -1;
    int m_writer = -1;
    qsizetype m_filled = 0;
    QByteArray m_received;
};
