#pragma once

#include "controls/SharedState.h"
#include "platform/EventLoop.h"

#include <QStringList>

#include <optional>

namespace zrk {

class Output;
class MessageLines;
struct Loader;

/// The progress of transfers and of long waits: on a terminal ten times a second, elsewhere a line for each
/// tenth of a transfer and for every ten seconds of a wait.
class ProgressLines {
  public:
    ProgressLines(Loader& loader, Output& output, const MessageLines& messages);

  private:
    void tick();
    void showTransfer();
    void endTransfer();
    void tellTransfer(qint64 sent, qint64 total);
    void showWait();
    void tellWait(bool done);
    void endWait();

    /// A wait whose begin has been told.
    struct Wait {
        Awaited kind = Awaited::PowerOn;
        QString text;
        EventLoop::TimePoint since;
    };

    Loader& m_loader;
    Output& m_output;
    const MessageLines& m_messages;
    std::unique_ptr<Timer> m_timer;
    EventLoop::TimePoint m_lastWaitLine;
    EventLoop::TimePoint m_lastEvent;
    int m_lastTenth = 0;
    int m_shownSlot = -1; ///< its transfer was shown last, until its end is reported
    qint64 m_shownTotal = 0;
    std::optional<Wait> m_wait;
};

/// Returns as many of the parts, separated by commas, as fit; cuts the first one if even that does not.
[[nodiscard]] QString fitted(const QStringList& parts, qsizetype columns);

} // namespace zrk
