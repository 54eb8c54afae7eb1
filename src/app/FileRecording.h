#pragma once

#include "machine/FileWriter.h"

#include <QObject>
#include <QProperty>

class QAction;

namespace zrk {

struct Loader;

/// A kind of recording, and its texts.
struct Recording {
    QString title;      ///< of its dialogs: "Record trace"
    QString startEntry; ///< "Record &trace..."
    QString entry;      ///< the same while it runs: "Record &trace to %1"
    QString fileType;   ///< "Traces (.trace)"
    QString filePattern;
    QString begun; ///< "Recording what passes the port to %1"
    QString ended;
    /// Throws RuntimeFailure if the file cannot be written; reports later failures to `failed`.
    std::function<void(const QString& path, FileWriter::Told failed)> start;
    std::function<void()> stop;
};

/// A menu entry that records into a file: a click asks for the file, the next one ends it. The tick and the
/// entry's text show that it runs, and where. No recording starts during an operation, because
/// its dialog would hold the operation up; a failure is reported in the console for the same reason.
class FileRecording final : public QObject {
    Q_OBJECT

  public:
    /// Becomes a child of the entry. The loader, and what `recording` calls, must outlive it.
    FileRecording(QAction& entry, Recording recording, Loader& loader);

  private:
    void entry_Click();
    void start();
    void showState();
    void failed(const QString& why);

    QAction& m_entry;
    Recording m_recording;
    Loader& m_loader;
    QString m_file; ///< "" for none
    QPropertyChangeHandler<std::function<void()>> m_whenBusy;
};

class ConsoleLog;
class TracedPorts;

/// Makes the entry "Record trace...". The ports must outlive it.
void recordTrace(QAction& entry, TracedPorts& ports, Loader& loader);

/// Makes the entry "Log to file..." and the one that switches time stamps, which the file `store` keeps from
/// one run to the next. The log must outlive them.
void logToFile(QAction& entry, QAction& timeStamps, ConsoleLog& log, Loader& loader, const QString& store);

} // namespace zrk
