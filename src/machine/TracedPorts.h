#pragma once

#include "machine/TraceFile.h"
#include "platform/SerialPort.h"

#include <functional>
#include <utility>

namespace zrk {

class Timer;

/// Other serial ports, with a trace of the one that is open, from startTrace() to stopTrace(). Without a
/// trace it only passes the calls on. Loop and ports must outlive it, and it must outlive what it opens.
class TracedPorts final : public SerialPorts {
  public:
    TracedPorts(EventLoop& loop, SerialPorts& ports);
    ~TracedPorts() override;

    /// Ends a trace that is under way, and starts one, also of a port that is open. See TraceFile for record,
    /// failures and `failed`.
    void startTrace(const RecordFile& record, TraceFile::Told failed);

    /// Ends the trace. Does nothing without one.
    void stopTrace();

    /// Sets what is called each time a port has been opened, before any byte passes it. A RuntimeFailure
    /// thrown there closes the port again.
    void whenOpened(std::function<void()> opened) { m_whenOpened = std::move(opened); }

    /// Returns true also after the file has failed.
    [[nodiscard]] bool isTracing() const { return m_trace != nullptr; }

    [[nodiscard]] std::unique_ptr<SerialPort> open(int number, const LineSettings& settings,
                                                   Handshaking handshaking) override;
    void giveUp() override { m_ports.giveUp(); }
    [[nodiscard]] QString deviceName(int number) const override { return m_ports.deviceName(number); }
    [[nodiscard]] std::optional<bool> isThere(int number) const override { return m_ports.isThere(number); }
    [[nodiscard]] QString notice(int number) const override { return m_ports.notice(number); }

  private:
    class TracedPort;

    void note(const QString& event);
    void note(TraceFile::Direction direction, QByteArrayView bytes);

    SerialPorts& m_ports;
    EventLoop& m_loop;
    std::function<void()> m_whenOpened;
    std::unique_ptr<TraceFile> m_trace; ///< null without a trace
    TracedPort* m_open = nullptr;
    std::unique_ptr<Timer> m_look; ///< runs while a trace does
};

} // namespace zrk
