#pragma once

#include "controls/Desk.h"
#include "controls/PendingWait.h"
#include "platform/EventLoop.h"

#include <cstdint>

namespace zrk {

class ComPort;
class StatusConsole;

/// The primitives of every protocol, and their two timers. Expects the port in programmed mode. Port failures
/// pass through as RuntimeFailure.
///
///     transport.ArmReplyTimer(true);                         // one interval for what follows
///     transport.SendString(QStringLiteral("A"));
///     if (!transport.ExpectChar(QStringLiteral("5")))        // yields; false also after a cancel or time-out
///         return Operation::End::Abort;
///     transport.ArmReplyTimer(false);
class Transport {
  public:
    Transport(Desk& desk, ComPort& port, StatusConsole& console);

    /// Writes the text, one byte per character; does nothing while DebugMode is set. Never yields; waits for
    /// the line only if the port's transmit queue is full.
    void SendString(const QString& text);

    /// Sends the one character with this code by SendString.
    void SendByte(std::uint8_t byte);

    /// Waits, yielding, for a byte and returns the character of its code; returns the NUL character if
    /// CancelRequested ends the wait, even if bytes are waiting.
    [[nodiscard]] QString ReadChar();

    /// Reads one character into LastChar, echoes it to the console and compares it; prints a message on a
    /// mismatch. Yields.
    [[nodiscard]] bool ExpectChar(const QString& expected);

    /// Keeps for the user what the board sent instead of what was expected, or that it sent nothing in time;
    /// does nothing after a cancelled wait.
    void noteUnexpected(std::uint8_t expected, const QString& got);

    /// Restarts the reply time-out, 5000 ms or 10000 ms in DebugMode, if true; stops it if false.
    void ArmReplyTimer(bool enable);

    /// Notes what is waited for from now on, until the result is destroyed.
    [[nodiscard]] PendingWait noteWait(Awaited kind, const QString& what) {
        return {m_desk.state, kind, what, m_desk.loop.now()};
    }

    /// Yields once, as one pass of a transfer's loop.
    void pass() { m_desk.loop.yield(); }

    /// Returns true if another byte goes out without waiting for the line; keeps enough of the queue free
    /// that a frame's closing bytes never have to wait.
    [[nodiscard]] bool hasRoom();

    /// Blocks until an event comes (the line takes bytes, a click, a tick) and runs it.
    void waitForRoom() { m_desk.loop.wait(); }

    /// Waits, yielding, until all that was sent has left the port: no longer than `limit`, and only as long
    /// as something leaves within every `stall`. Returns true if all has left, or the port is closed.
    bool letOut(std::chrono::milliseconds limit, std::chrono::milliseconds stall);

    /// Asks the running wait to stop and informs the user, after the reply time-out has expired.
    void timTimeOut_Timer();

    /// Starts or stops the progress display of an image transfer, 250 ms.
    void enableSentStatus(bool enable);

    /// Returns true while the progress display of an image transfer runs.
    [[nodiscard]] bool isTransferring() const { return m_timSentStatus->isActive(); }

    /// Shows BytesSent and BytesTotal as text and per cent; an empty transfer counts as whole.
    void timSentStatus_Timer();

  private:
    void tickSentStatus();

    Desk& m_desk;
    ComPort& m_port;
    StatusConsole& m_console;
    std::unique_ptr<Timer> m_timTimeOut;
    std::unique_ptr<Timer> m_timSentStatus;
    std::chrono::milliseconds m_replyInterval;
    bool m_timeOutBoxOpen = false;
};

} // namespace zrk
