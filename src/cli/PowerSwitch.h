#pragma once

#include "platform/EventLoop.h"

#include <QProcess>
#include <QString>

#include <chrono>
#include <functional>

namespace zrk {

/// The command that switches a board's power. It runs in the system's shell and to its end: half-way it would
/// leave the board without power. Only end() ends it; a command that takes longer than its limit, or than the
/// life of this object, is left running.
class PowerSwitch {
  public:
    /// Gets the failure as a sentence, or ""; called once for each start(), from the event loop.
    using Ended = std::function<void(const QString& fault)>;

    static constexpr std::chrono::milliseconds kLimit = std::chrono::seconds(60);

    /// An empty command counts as missing.
    PowerSwitch(EventLoop& loop, QString command, std::chrono::milliseconds limit);
    ~PowerSwitch();
    PowerSwitch(const PowerSwitch&) = delete;
    PowerSwitch& operator=(const PowerSwitch&) = delete;

    [[nodiscard]] bool isSet() const { return !m_command.isEmpty(); }

    /// Starts the command with `port` in ZRK_PORT and `label` in ZRK_LABEL. Only while none is running.
    void start(const QString& port, const QString& label, Ended ended);

    /// Returns whether the last command has reached its limit.
    [[nodiscard]] bool hasRunOut() const { return m_hasRunOut; }

    /// Returns true from start() until `ended` has been called.
    [[nodiscard]] bool isRunning() const { return m_ended != nullptr; }

    /// Ends the command and all that it has started: by a request, and by force two seconds later.
    void end();

    /// Returns the end of the last command's output, 4 KiB at most.
    [[nodiscard]] QString said() const;

  private:
    /// A process that may outlive the object.
    struct Process final : QProcess {
        void leave() { setProcessState(QProcess::NotRunning); }
    };

    void takeOutput();
    void tick();
    void finish(const QString& fault);
    [[nodiscard]] QString faultOf(int status, QProcess::ExitStatus how) const;

    QString m_command;
    std::chrono::milliseconds m_limit;
    Process m_process;
    QByteArray m_said;
    Ended m_ended; ///< null while none runs
    bool m_isAskedToEnd = false;
    bool m_hasRunOut = false;
    std::unique_ptr<Timer> m_timer; ///< for the limit, then for the force
};

} // namespace zrk
