#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QString>

#include <chrono>
#include <functional>
#include <memory>
#include <thread>

namespace zrk {

class EventLoop;

/// What passes a serial port, in a text file for people to read and for the simulated board to replay.
///
///     # zrk trace 1                                            the form and its version
///     # began 2026-03-01T14:05:06.789+01:00                    comments begin with #
///         0.000000 open COM1 /dev/ttyUSB0 115200,N,8,1 handshaking none
///         3.210987 < 35                                               |5|
///         3.211120 > 41                                               |A|
///         9.000001 close unsent 12
///
/// Each line begins with the seconds since the trace began. ">" went to the board, at the time it was handed
/// over for the line to carry; "<" came from it, at the time it was there for the loader. Up to 16 bytes of
/// one direction that belong to the same 20 ms share a line, in hexadecimal and, between bars, as text with a
/// dot for what does not print. The other lines: open (port, device, settings), refused (why), handshaking
/// none|xonxoff, dtr on|off, lost (why), and close with the number of bytes that may never have left.
///
/// A thread of its own writes, at most 0.2 s after the event; no call waits for the disk.
class TraceFile {
  public:
    enum class Direction : char { ToBoard = '>', FromBoard = '<' };
    using Told = std::function<void(const QString&)>;

    /// Writes over a file that is there. Throws RuntimeFailure (File) that says what, why and what to do.
    /// `failed` gets to know, once and on the loop's thread, why the trace ended too early: by a task posted
    /// to the loop, or at the latest by end().
    TraceFile(const QString& path, EventLoop& loop, Told failed);
    ~TraceFile();
    TraceFile(const TraceFile&) = delete;
    TraceFile& operator=(const TraceFile&) = delete;

    /// Once the trace has ended these do nothing.
    void bytes(Direction direction, QByteArrayView bytes);
    void event(const QString& text);

    /// Writes what is left; a file that does not take it within seconds is given up.
    void end();

  private:
    struct Entry;
    struct Shared;

    [[nodiscard]] std::chrono::microseconds now() const;
    void append(std::chrono::microseconds at, char kind, QByteArrayView bytes);
    void tellFailure();
    static void writeUntilEnd(Shared& shared);

    EventLoop& m_loop;
    Told m_failed; ///< empty once told
    std::chrono::steady_clock::time_point m_began;
    std::shared_ptr<Shared> m_shared; ///< outlives this while a write hangs
    std::shared_ptr<TraceFile*> m_self;
    std::thread m_writer;
};

} // namespace zrk
