#pragma once

#include <QByteArray>
#include <QProcess>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

#include <memory>

/// A folder with the simulated board's sample images and INI file.
class SampleImages {
  public:
    SampleImages();
    [[nodiscard]] QString file(const QString& name) const { return m_folder.filePath(name); }
    [[nodiscard]] QString ini() const { return file(QStringLiteral("zrk-loader.INI")); }

  private:
    QTemporaryDir m_folder;
};

/// A running simulated board; it ends with the object.
class BoardProcess {
  public:
    explicit BoardProcess(const QStringList& options);
    ~BoardProcess();
    [[nodiscard]] const QString& device() const { return m_device; }

    /// Asks the board to end, so that it writes its dumps, and waits for that.
    void stop();

  private:
    QProcess m_process;
    QString m_device;
};

/// A run of zrk-loader-cli. Its input is not a terminal unless a device is given.
class CliRun {
  public:
    explicit CliRun(const QStringList& arguments, const QString& inputDevice = {});

    /// Reads until the text has come on standard output or error. False when the run ends before.
    [[nodiscard]] bool waitForOutput(const QByteArray& text);
    [[nodiscard]] bool waitForError(const QByteArray& text);

    void interrupt();

    /// Waits for the end; the exit status, or -1 when it does not end in time.
    [[nodiscard]] int status();

    [[nodiscard]] const QByteArray& output();
    [[nodiscard]] const QByteArray& error();

  private:
    [[nodiscard]] bool waitFor(const QByteArray& text, QByteArray& stream);
    void collect();

    QProcess m_process;
    QByteArray m_output;
    QByteArray m_error;
};
