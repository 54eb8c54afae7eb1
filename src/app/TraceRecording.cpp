#include "app/TraceRecording.h"

#include "loader/Loader.h"
#include "machine/TracedPorts.h"
#include "platform/FileDialog.h"
#include "platform/RuntimeFailure.h"

#include <QAction>
#include <QFileInfo>

namespace zrk {

TraceRecording::TraceRecording(QAction& entry, TracedPorts& ports, Loader& loader)
    : QObject(&entry), m_entry(entry), m_ports(ports), m_loader(loader) {
    entry.setCheckable(true);
    connect(&entry, &QAction::triggered, this, &TraceRecording::mnuRecordTrace_Click);
    showState({});
}

void TraceRecording::mnuRecordTrace_Click() {
    if (!m_ports.isTracing())
        return start();
    m_ports.stopTrace();
    showState({});
    m_loader.state.Remark = QStringLiteral("The trace has been recorded.");
}

void TraceRecording::start() {
    showState({}); // the click has ticked it, and the dialog may be cancelled
    FileRequest request;
    request.title = QStringLiteral("Record trace");
    request.filters = {{QStringLiteral("Traces (.trace)"), QStringLiteral("*.trace")},
                       {QStringLiteral("All Files (*.*)"), QStringLiteral("*.*")}};
    request.isToBeWritten = true;
    const QString file = m_loader.fileDialog.openFile(request);
    if (file.isEmpty() || m_ports.isTracing())
        return;
    try {
        m_ports.startTrace(file, [this](const QString& why) { failed(why); });
        showState(file);
        m_loader.state.Remark = QStringLiteral("Recording what passes the port to %1").arg(file);
    } catch (const RuntimeFailure& failure) {
        failed(failure.description());
    }
}

void TraceRecording::showState(const QString& file) {
    m_entry.setChecked(!file.isEmpty());
    m_entry.setText(file.isEmpty() ? QStringLiteral("Record &trace...")
                                   : QStringLiteral("Record &trace to %1").arg(QFileInfo(file).fileName()));
}

/// The box is shown when whatever runs yields; it must not run within the trace's own end.
void TraceRecording::failed(const QString& why) {
    showState({});
    m_loader.loop.post([&loader = m_loader, why] {
        loader.tell(why, MessageIcon::Exclamation, QStringLiteral("Record trace"));
    });
}

} // namespace zrk
