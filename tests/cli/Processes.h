#pragma once

#include "board/launcher/BoardProcess.h"

#include <QByteArray>
#include <QProcess>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

/// A folder with the simulated board's sample images and INI file.
class SampleImages {
  public:
    SampleImages();
    [[nodiscard]] QString file(const QString& name) const { return m_folder.filePath(name); }
    [[nodiscard]] QString ini() const { return file(QStringLiteral("zrk-loader.INI")); }

  private:
    QTemporaryDir m_folder;
};

/// A running simulated board.
struct BoardProcess : zrkboard::BoardProcess {
    explicit BoardProcess(const QStringList& options);
    [[nodiscard]] QString device() const { return QString::fromStdString(zrkboard::BoardProcess::device()); }
};

/// Terminals that a run gets for its standard streams; without one the input is none, the rest is collected.
struct Terminals {
    QString input;
    QString output;
    QString error;
};

/// A run of zrk-loader-cli.
class CliRun {
  public:
    explicit CliRun(const QStringList& arguments, const Terminals& terminals = {});

    /// Reads until the text has come on standard output or error. False when the run ends before.
    [[nodiscard]] bool waitForOutput(const QByteArray& text);
    [[nodiscard]] bool waitForError(const QByteArray& text);

    void send(int signal);

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
