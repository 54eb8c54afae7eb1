#pragma once

#include "machine/NativePort.h"
#include "machine/TransmitQueue.h"
#include "platform/SerialPort.h"

#include <QByteArray>
#include <QString>

#include <boost/asio/executor_work_guard.hpp>
#include <boost/asio/steady_timer.hpp>

#include <array>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <optional>
#include <thread>

namespace zrk {

class EventLoop;

/// One opening of one device: a thread that moves bytes between the device and two buffers, and
/// the calls of the thread that owns the port. The failures it throws are described at SerialPort.
///
/// The event loop is woken when bytes have arrived, when the device breaks, and when the transmit
/// queue, after a look that found less than half of it free, is half free again.
class PortDriver {
  public:
    struct Limits {
        std::chrono::milliseconds stall{}; ///< the longest that the line may take nothing at all
        qsizetype received = 0;            ///< unread bytes above which the device is left waiting
    };

    /// Opens the device. `port` is the name in messages.
    PortDriver(EventLoop& loop, QString port, Limits limits);
    ~PortDriver();
    PortDriver(const PortDriver&) = delete;
    PortDriver& operator=(const PortDriver&) = delete;

    /// Throws RuntimeFailure (PortNotOpened). Called once, before all else.
    void open(const QString& device, const LineSettings& settings, Handshaking handshaking);

    [[nodiscard]] const QString& portName() const { return m_portName; }
    [[nodiscard]] bool isLost() const;
    [[nodiscard]] qsizetype bytesWaiting() const;
    [[nodiscard]] QByteArray read(qsizetype most);
    void skip(char byte);
    void write(QByteArrayView bytes);
    [[nodiscard]] qsizetype transmitRoom();
    [[nodiscard]] qsizetype unsentBytes() const;
    void setHandshaking(Handshaking handshaking);
    bool setDtr(bool on);
    [[nodiscard]] bool drain(std::chrono::milliseconds limit);

  private:
    using Clock = std::chrono::steady_clock;
    using ErrorCode = boost::system::error_code;
    using Lock = std::unique_lock<std::mutex>;

    void applySettings(const LineSettings& settings);
    void throwIfFailed() const;
    void reportGone(const ErrorCode& error);
    void fail(QString description);

    // On the driver thread.
    void startReading();
    void onRead(const ErrorCode& error, std::size_t count);
    void startSending();
    void sendFront(std::span<const char> bytes);
    void onSent(const ErrorCode& error, std::size_t count);
    void watchForStall(Clock::time_point due);
    void onStallTimer();

    EventLoop& m_loop;
    const QString m_portName;
    const Limits m_limits;

    boost::asio::io_context m_io{1};
    boost::asio::executor_work_guard<boost::asio::io_context::executor_type> m_work{m_io.get_executor()};
    NativePort m_native{m_io};
    std::optional<bool> m_dtr; // owner's thread only

    // Driver thread only.
    boost::asio::steady_timer m_stallTimer{m_io};
    bool m_watchingForStall = false;
    std::array<char, 4096> m_chunk{};

    mutable std::mutex m_mutex;
    // Guarded by m_mutex, except the bytes that m_queue has handed over.
    QByteArray m_received;
    bool m_readingPaused = false;
    TransmitQueue m_queue{SerialPort::kTransmitQueueSize};
    bool m_sending = false;
    bool m_roomAwaited = false;
    bool m_mayStop = false; ///< the board may stop the line with XOFF for as long as it likes
    Clock::time_point m_lastProgress;
    std::optional<QString> m_failure;
    std::condition_variable m_changed; ///< room in the queue, or a failure

    std::jthread m_thread; // last: it uses all of the above
};

} // namespace zrk
