#pragma once

#include "machine/FileWriter.h"

#include <QObject>
#include <QProperty>

class QAction;

namespace zrk {

struct Loader;

/// What is recorded, and the words for it.
struct Recording {
    QString title;      ///< of its dialogs: "Record trace"
    QString startEntry; ///< "Record &trace..."
    QString entry;      ///< the same while it goes on: "Record &trace to %1"
    QString fileType;   ///< "Traces (.trace)"
    QString filePattern;
    QString begun; ///< "Recording what passes the port to %1"
    QString ended;
    /// Throws RuntimeFailure when the file cannot be written; `failed` is told of what goes wrong later.
    std::function<void(const QString& path, FileWriter::Told failed)> start;
    std::function<void()> stop;
};

/// A menu entry that records something in a file: a click asks for the file, the next one ends it. The tick
/// and the entry's text say that it goes on, and where. While an operation runs none is begun, since the
/// dialog would hold that up, and a failure is told in the console, where it holds up nothing either.
class FileRecording final : public QObject {
    Q_OBJECT

  public:
    /// A child of the entry. The loader, and what `recording` calls, must outlive it.
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

/// Makes the entry "Log to file..." and the one that switches time stamps, which the file `store` remembers
/// from one run to the next. The log must outlive them.
void logToFile(QAction& entry, QAction& timeStamps, ConsoleLog& log, Loader& loader, const QString& store);

} // namespace zrk
