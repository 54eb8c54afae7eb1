#include "app/FileRecording.h"

#include "app/ConsoleLog.h"
#include "app/DatedFileName.h"
#include "app/GreyReasons.h"
#include "config/ImageSlots.h"
#include "files/PrintableText.h"
#include "loader/Loader.h"
#include "machine/TracedPorts.h"
#include "platform/FileDialog.h"
#include "platform/RuntimeFailure.h"

#include <QAction>
#include <QFileInfo>
#include <QSettings>

#include <utility>

namespace zrk {
namespace {

const QString kTimeStampsKey = QStringLiteral("logTimeStamps");

} // namespace

FileRecording::FileRecording(QAction& entry, Recording recording, Loader& loader)
    : QObject(&entry), m_entry(entry), m_recording(std::move(recording)), m_loader(loader),
      m_whenBusy(
          loader.state.OperationActive.onValueChanged(std::function<void()>([this] { showState(); }))) {
    entry.setCheckable(true);
    connect(&entry, &QAction::triggered, this, &FileRecording::entry_Click);
    showState();
}

void FileRecording::entry_Click() {
    if (m_file.isEmpty())
        return start();
    m_recording.stop();
    if (m_file.isEmpty())
        return showState(); // its last bytes failed, which is reported
    m_file.clear();
    showState();
    m_loader.state.Remark = {m_recording.ended, RemarkSeverity::Done};
}

void FileRecording::start() {
    showState(); // the click has ticked it, and the dialog may be cancelled
    FileRequest request;
    request.title = m_recording.title;
    request.filters = {{m_recording.fileType, m_recording.filePattern},
                       {QStringLiteral("All Files (*.*)"), QStringLiteral("*.*")}};
    request.isToBeWritten = true;
    request.name = datedFileName(m_recording.filePattern.mid(1));
    const QString file = m_loader.fileDialog.openFile(request);
    if (file.isEmpty() || !m_file.isEmpty())
        return;
    try {
        m_recording.start(file, [this](const QString& why) { failed(why); });
        m_file = file;
        showState();
        m_loader.state.Remark = {m_recording.begun.arg(printableText(file)), RemarkSeverity::Note};
    } catch (const RuntimeFailure& failure) {
        failed(failure.description());
    }
}

void FileRecording::showState() {
    const bool waits = m_file.isEmpty() && m_loader.state.OperationActive;
    m_entry.setEnabled(!waits);
    m_entry.setToolTip(waits ? reasonWhileBusy() : QString());
    m_entry.setChecked(!m_file.isEmpty());
    m_entry.setText(m_file.isEmpty() ? m_recording.startEntry
                                     : m_recording.entry.arg(printableText(QFileInfo(m_file).fileName())));
}

/// Runs later, since a box must not run within the file's own end. During an operation a box would stop that,
/// with the board's answer on the way.
void FileRecording::failed(const QString& why) {
    if (m_loader.state.Remark.text == m_recording.begun.arg(printableText(m_file)))
        m_loader.state.Remark = {};
    m_file.clear();
    showState();
    m_loader.loop.post([&loader = m_loader, why, title = m_recording.title] {
        if (loader.state.OperationActive)
            loader.controls.txtStatus.append(QStringLiteral("\r\n--- %1 ---\r\n").arg(why));
        else
            loader.tell(why, MessageIcon::Exclamation, title);
    });
}

void recordTrace(QAction& entry, TracedPorts& ports, Loader& loader) {
    new FileRecording(entry,
                      {QStringLiteral("Record trace"), QStringLiteral("Record &trace..."),
                       QStringLiteral("Record &trace to %1"), QStringLiteral("Traces (.trace)"),
                       QStringLiteral("*.trace"), QStringLiteral("Recording what passes the port to %1"),
                       QStringLiteral("The trace has been recorded."),
                       [&ports, &loader](const QString& path, FileWriter::Told failed) {
                           ports.startTrace({path, filesToRead(loader)}, std::move(failed));
                       },
                       [&ports] { ports.stopTrace(); }},
                      loader);
}

void logToFile(QAction& entry, QAction& timeStamps, ConsoleLog& log, Loader& loader, const QString& store) {
    timeStamps.setCheckable(true);
    timeStamps.setText(QStringLiteral("Time sta&mps in the log"));
    QObject::connect(&timeStamps, &QAction::toggled, &timeStamps, [&log, store](bool on) {
        log.setTimeStamps(on);
        QSettings(store, QSettings::IniFormat).setValue(kTimeStampsKey, on);
    });
    timeStamps.setChecked(QSettings(store, QSettings::IniFormat).value(kTimeStampsKey).toBool());
    new FileRecording(entry,
                      {QStringLiteral("Log to file"), QStringLiteral("Log to &file..."),
                       QStringLiteral("Log to &file %1"), QStringLiteral("Logs (.log)"),
                       QStringLiteral("*.log"), QStringLiteral("Logging what comes into the console to %1"),
                       QStringLiteral("The log is complete."),
                       [&log, &loader](const QString& path, FileWriter::Told failed) {
                           log.start({path, filesToRead(loader)}, std::move(failed));
                       },
                       [&log] { log.stop(); }},
                      loader);
}

} // namespace zrk
