#include "cli/ProgressLines.h"

#include "cli/Terminal.h"
#include "core/Loader.h"
#include "platform/StandardStreams.h"

#include <cstdio>

namespace zrk {

using namespace std::chrono_literals;

namespace {

constexpr std::chrono::milliseconds kRefresh = 250ms;
constexpr std::chrono::seconds kTransferLineEvery = 2s;
constexpr std::chrono::seconds kWaitLineEvery = 10s;

} // namespace

ProgressLines::ProgressLines(Loader& loader, EventLoop& loop)
    : m_loader(loader), m_loop(loop), m_timer(loop.createTimer([this] { tick(); })),
      m_overwrites(standardErrorIsTerminal()), m_lastLine(loop.now()) {
    m_timer->start(kRefresh);
}

ProgressLines::~ProgressLines() {
    clearLine();
}

void ProgressLines::tick() {
    m_loader.activity.refresh();
    const QString text = progressText();
    if (text.isEmpty()) {
        clearLine();
        return;
    }
    if (m_overwrites) {
        write(text);
    } else if (m_loop.now() - m_lastLine >=
               (m_loader.transport.isTransferring() ? kTransferLineEvery : kWaitLineEvery)) {
        m_lastLine = m_loop.now();
        tell(text);
    }
}

QString ProgressLines::progressText() const {
    if (!m_loader.state.OperationActive)
        return {};
    const StatusBar& panels = m_loader.controls.staStatus;
    if (m_loader.transport.isTransferring())
        return QStringLiteral("%1 (%2 %), %3")
            .arg(panels.SecondPanel.value())
            .arg(m_loader.controls.pgbDownload.Value.value(), 0, 'f', 0)
            .arg(panels.FirstPanel.value());
    return m_loader.state.WaitingFor.isEmpty() ? QString() : panels.FirstPanel.value();
}

void ProgressLines::write(const QString& text) {
    const qsizetype length = qMax(m_shownLength, text.size());
    std::fprintf(stderr, "\r%s", text.leftJustified(length).toLocal8Bit().constData());
    std::fflush(stderr);
    m_shownLength = text.size();
}

void ProgressLines::clearLine() {
    if (m_shownLength == 0)
        return;
    std::fprintf(stderr, "\r%s\r", QByteArray(m_shownLength, ' ').constData());
    std::fflush(stderr);
    m_shownLength = 0;
}

} // namespace zrk
