#pragma once

#include "board/launcher/BoardProcess.h"

#include <QByteArray>
#include <QProcess>
#include <QString>
#include <QTemporaryDir>

/// A file's bytes; none, and a failed test, when it cannot be read.
[[nodiscard]] QByteArray contents(const QString& path);

/// A folder with the simulated board's sample images and INI file.
class SampleImages {
  public:
    SampleImages();
    [[nodiscard]] QString file(const QString& name) const { return m_folder.filePath(name); }
    [[nodiscard]] QString ini() const { return file("zrk-loader.INI"); }
    /// The arguments of a run on that port with these images.
    [[nodiscard]] QString on(const QString& device, const QString& rest) const {
        return "--port " + device + " --ini " + ini() + " " + rest;
    }

  private:
    QTemporaryDir m_folder;
};

/// A running simulated board; its options are one line.
struct BoardProcess : zrkboard::BoardProcess {
    explicit BoardProcess(const QString& options);
    [[nodiscard]] QString device() const { return QString::fromStdString(zrkboard::BoardProcess::device()); }
};

/// Terminals, or other files, that a run gets for its standard streams; without one the input is none, the
/// rest is collected.
struct Terminals {
    QString input = {};
    QString output = {};
    QString error = {};
    int signal = 0; ///< waits for the run when it begins; 0 for none
};

/// A run of zrk-loader-cli; its arguments are one line.
class CliRun {
  public:
    explicit CliRun(const QString& arguments, const Terminals& terminals = {});

    /// Reads until the text has come on standard output or error. False when the run ends before.
    [[nodiscard]] bool waitFor(QProcess::ProcessChannel channel, const QByteArray& text);

    void send(int signal);

    /// Sends it again and again until the run has ended.
    void sendUntilItEnds(int signal);

    /// Waits for the end; the exit status, or -1 when it does not end in time.
    [[nodiscard]] int status();

    /// What it has written; known once it has ended.
    [[nodiscard]] const QByteArray& output() const { return m_output; }
    [[nodiscard]] const QByteArray& error() const { return m_error; }

  private:
    QProcess m_process;
    QByteArray m_output;
    QByteArray m_error;
};
