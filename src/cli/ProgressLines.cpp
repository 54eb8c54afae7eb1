#include "cli/ProgressLines.h"

#include "cli/Terminal.h"
#include "loader/Loader.h"
#include "machine/StandardStreams.h"

#include <cstdio>

namespace zrk {

using namespace std::chrono_literals;

namespace {

constexpr std::chrono::milliseconds kRefresh = 250ms;
constexpr std::chrono::seconds kTransferLineEvery = 2s;
constexpr std::chrono::seconds kWaitLineEvery = 10s;

} // namespace

ProgressLines::ProgressLines(Loader& loader, const TerminalMessages& messages, EventLoop& loop)
    : m_loader(loader), m_messages(messages), m_loop(loop), m_timer(loop.createTimer([this] { tick(); })),
      m_overwrites(standardErrorIsTerminal()), m_shared(m_overwrites && standardOutputIsTerminal()),
      m_lastLine(loop.now()) {
    m_timer->start(kRefresh);
}

ProgressLines::~ProgressLines() {
    clearLine();
}

void ProgressLines::tick() {
    if (m_messages.isAsking())
        return;
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
    if (m_loader.transport.isTransferring() && panels.SecondPanel.value().isEmpty())
        return {};
    if (m_loader.transport.isTransferring())
        return QStringLiteral("%1 (%2 %), %3")
            .arg(panels.SecondPanel.value())
            .arg(m_loader.controls.pgbDownload.Value.value(), 0, 'f', 0)
            .arg(panels.FirstPanel.value());
    return m_loader.state.WaitingFor.isEmpty() ? QString() : panels.FirstPanel.value();
}

/// The text of the console behind its last line end, which shares the terminal's last line.
QString ProgressLines::unfinishedLine() const {
    if (!m_shared)
        return {};
    const QString& text = m_loader.controls.txtStatus.text();
    return text.mid(text.lastIndexOf(QLatin1Char('\n')) + 1).remove(QChar(u'\0'));
}

void ProgressLines::write(const QString& text) {
    constexpr qsizetype kColumns = 79;
    // What is shown in front comes back when the line is cleared, which is before the console goes on.
    m_behind = unfinishedLine();
    const QString line =
        ((m_behind.isEmpty() ? QString() : m_behind + QStringLiteral(" ")) + text).left(kColumns);
    std::fprintf(stderr, "\r%s",
                 line.leftJustified(qMax(m_shownLength, line.size())).toLocal8Bit().constData());
    std::fflush(stderr);
    m_shownLength = line.size();
}

void ProgressLines::clearLine() {
    if (m_shownLength == 0)
        return;
    std::fprintf(stderr, "\r%s\r%s", QByteArray(m_shownLength, ' ').constData(),
                 m_behind.toLocal8Bit().constData());
    std::fflush(stderr);
    m_shownLength = 0;
}

} // namespace zrk
