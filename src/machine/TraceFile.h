#pragma once

#include "machine/FileWriter.h"
#include "platform/EventLoop.h"

#include <QByteArray>

#include <chrono>

namespace zrk {

/// The data of a serial port in a text file, for people to read and for the simulated board to replay.
///
///     # zrk trace 1                                            the form and its version
///     # began 2026-03-01T14:05:06.789+01:00                    comments begin with #
///         0.000000 open COM1 /dev/ttyUSB0 115200,N,8,1 handshaking none
///         3.210987 < 35                                               |5|
///         3.211120 > 41                                               |A|
///         9.000001 close unsent 12
///
/// Each line begins with the seconds since the trace began. ">" went to the board, at the time it was handed
/// to the line; "<" came from it, at the time it was there for the loader. Up to 16 bytes of one direction
/// within the same 20 ms share a line, in hexadecimal and, between bars, as text with a dot for an
/// unprintable byte. The other lines: open (port, device, settings), refused (why), handshaking none|xonxoff,
/// dtr on|off, lost (why), and close with the number of bytes that may never have left.
class TraceFile {
  public:
    enum class Direction : char { ToBoard = '>', FromBoard = '<' };
    using Told = FileWriter::Told;

    /// See FileWriter.
    TraceFile(const RecordFile& record, EventLoop& loop, Told failed);
    ~TraceFile();
    TraceFile(const TraceFile&) = delete;
    TraceFile& operator=(const TraceFile&) = delete;

    /// These do nothing once the trace has ended.
    void bytes(Direction direction, QByteArrayView bytes);
    void event(const QString& text);

    /// See FileWriter.
    void end();

  private:
    [[nodiscard]] std::chrono::microseconds now() const;
    void startLine(std::chrono::microseconds at, char kind);
    void finishLine();

    EventLoop& m_loop;
    EventLoop::TimePoint m_began;
    FileWriter m_writer;
    // The line that takes bytes.
    std::chrono::microseconds m_at{};
    char m_kind = 0;
    QByteArray m_bytes; ///< empty without a line
    std::unique_ptr<Timer> m_finish;
};

} // namespace zrk
