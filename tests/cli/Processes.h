#pragma once

#include "board/launcher/BoardProcess.h"

#include <QByteArray>
#include <QProcess>
#include <QString>
#include <QTemporaryDir>

/// Returns a file's bytes; none, and a failed test, if it cannot be read.
[[nodiscard]] QByteArray contents(const QString& path);

/// A folder with the simulated board's sample images and INI file.
class SampleImages {
  public:
    SampleImages();
    [[nodiscard]] QString file(const QString& name) const { return m_folder.filePath(name); }
    [[nodiscard]] QString ini() const { return file("zrk-loader.INI"); }
    /// Returns the arguments of a run on that port with these images.
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

/// Terminals, or other files, for a run's standard streams; without one it has no input, and its output is
/// collected.
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

    /// Reads until the text has come on standard output or error. Returns false if the run ends before.
    [[nodiscard]] bool waitFor(QProcess::ProcessChannel channel, const QByteArray& text);

    void send(int signal);

    /// Sends it again and again until the run has ended.
    void sendUntilItEnds(int signal);

    /// Waits for the end; returns the exit status, or -1 if it does not end in time.
    [[nodiscard]] int status();

    /// Returns its output; known once it has ended.
    [[nodiscard]] const QByteArray& output() const { return m_output; }
    [[nodiscard]] const QByteArray& error() const { return m_error; }

  private:
    QProcess m_process;
    QByteArray m_output;
    QByteArray m_error;
};
