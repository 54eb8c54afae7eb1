#include "cli/ProgressLines.h"

#include "cli/MessageLines.h"
#include "cli/Output.h"
#include "loader/Loader.h"

namespace zrk {

using namespace std::chrono_literals;

namespace {

constexpr std::chrono::milliseconds kRefresh = 250ms;
constexpr std::chrono::seconds kTransferLineEvery = 2s;
constexpr std::chrono::seconds kWaitLineEvery = 10s;

} // namespace

ProgressLines::ProgressLines(Loader& loader, Output& output, const MessageLines& messages)
    : m_loader(loader), m_output(output), m_messages(messages),
      m_timer(loader.loop.createTimer([this] { tick(); })), m_lastLine(loader.loop.now()) {
    m_timer->start(kRefresh);
}

void ProgressLines::tick() {
    if (m_messages.isAsking())
        return;
    const QString text = progressText();
    if (text.isEmpty())
        return m_output.clearProgress();
    const auto now = m_loader.loop.now();
    const auto pause = m_loader.transport.isTransferring() ? kTransferLineEvery : kWaitLineEvery;
    if (!m_output.overwrites() && now - m_lastLine < pause)
        return;
    m_lastLine = now;
    m_output.progress(text);
}

QString ProgressLines::progressText() const {
    if (!m_loader.state.OperationActive)
        return {};
    const StatusBar& panels = m_loader.controls.staStatus;
    if (m_loader.transport.isTransferring() && panels.SecondPanel.value().isEmpty())
        return {};
    if (m_loader.transport.isTransferring())
        return QStringLiteral("%1 (%2 %), %3")
            .arg(panels.SecondPanel.value())
            .arg(m_loader.controls.pgbDownload.Value.value(), 0, 'f', 0)
            .arg(panels.FirstPanel.value());
    return m_loader.state.WaitingFor.isEmpty() ? QString() : panels.FirstPanel.value();
}

} // namespace zrk
