#pragma once

#include <QObject>

class QAction;

namespace zrk {

class TracedPorts;
struct Loader;

/// The menu entry that records what passes the port: a click asks for a file, the next one ends it. The tick
/// and the entry's text say that a trace is being recorded, and where.
class TraceRecording final : public QObject {
    Q_OBJECT

  public:
    /// A child of the entry. All others must outlive it.
    TraceRecording(QAction& entry, TracedPorts& ports, Loader& loader);

  private:
    void mnuRecordTrace_Click();
    void start();
    void showState(const QString& file);
    void failed(const QString& why);

    QAction& m_entry;
    TracedPorts& m_ports;
    Loader& m_loader;
};

} // namespace zrk
