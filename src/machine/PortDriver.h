#pragma once

#include "machine/LinePace.h"
#include "machine/PortDevice.h"
#include "machine/TransmitQueue.h"
#include "platform/SerialPort.h"

#include <QByteArray>
#include <QString>

// Boost 1.74 uses std::exchange under C++20 without including it, so the order matters.
// clang-format off
#include <utility>

#include <boost/asio/executor_work_guard.hpp>
#include <boost/asio/io_context.hpp>
#include <boost/asio/steady_timer.hpp>
// clang-format on

#include <array>
#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>

namespace zrk {

class EventLoop;

/// An open port of the machine: a thread that moves bytes between the device and two buffers, at the line's
/// pace, and the calls of the thread that owns the port.
///
/// It wakes the event loop when bytes have arrived, when the device breaks, and when the transmit queue,
/// after a call that found less than half of it free, is half free again.
class PortDriver final : public SerialPort {
  public:
    struct Limits {
        std::chrono::milliseconds stall{}; ///< the longest time without a byte going out
        qsizetype received = 0;            ///< unread bytes above which the device is left waiting
        std::uint32_t lineRate = 0;        ///< bytes a second; 0 for a port without a line
    };

    /// `port` is the name in messages.
    PortDriver(EventLoop& loop, QString port, Limits limits);
    ~PortDriver() override;
    PortDriver(const PortDriver&) = delete;
    PortDriver& operator=(const PortDriver&) = delete;

    /// Returns the context in which the device works, on the driver's thread.
    [[nodiscard]] boost::asio::io_context& io() { return m_io; }

    /// Starts the thread. Called once; apart from the device's own work it idles until serve() is called.
    void start(std::unique_ptr<PortDevice> device);

    /// Begins to move bytes. Called once, when the device is open.
    void serve(Handshaking handshaking);

    [[nodiscard]] bool isLost() const noexcept override;
    [[nodiscard]] qsizetype bytesWaiting() override;
    [[nodiscard]] QByteArray read(qsizetype most) override;
    void skip(char byte) override;
    void write(QByteArrayView bytes) override;
    [[nodiscard]] qsizetype transmitRoom() override;
    [[nodiscard]] qsizetype unsentBytes() const noexcept override;
    void setHandshaking(Handshaking handshaking) override;
    bool setDtr(bool on) override;
    [[nodiscard]] std::optional<LineErrors> lineErrors() const noexcept override;

  private:
    using Clock = std::chrono::steady_clock;
    using ErrorCode = boost::system::error_code;
    using Lock = std::unique_lock<std::mutex>;

    void applyHandshaking(Handshaking handshaking);
    void throwIfFailed() const;
    void resumeReading(Lock& lock);
    void reportGone(const ErrorCode& error);
    void fail(QString description);

    // On the driver thread.
    void startReading();
    void onRead(const ErrorCode& error, std::size_t count);
    void startSending();
    void sendFront(std::span<const char> bytes);
    void waitForPace(LinePace::TimePoint due);
    void onSent(const ErrorCode& error, std::size_t count);
    void watchForStall(Clock::time_point due);
    void onStallTimer();
    void lookAfter(std::chrono::milliseconds interval);

    EventLoop& m_loop;
    const QString m_portName;
    const Limits m_limits;

    boost::asio::io_context m_io{1};
    boost::asio::executor_work_guard<boost::asio::io_context::executor_type> m_work{m_io.get_executor()};
    std::unique_ptr<PortDevice> m_device;
    std::optional<bool> m_dtr; // owner's thread only

    // Driver thread only.
    boost::asio::steady_timer m_stallTimer{m_io};
    boost::asio::steady_timer m_paceTimer{m_io};
    boost::asio::steady_timer m_lookTimer{m_io};
    bool m_watchingForStall = false;
    Clock::time_point m_askedAt; ///< when the device got the bytes that it is taking
    std::array<char, 4096> m_chunk{};

    mutable std::mutex m_mutex;
    // Guarded by m_mutex, except the bytes that m_queue has handed over.
    QByteArray m_received;
    bool m_readingPaused = false;
    TransmitQueue m_queue{SerialPort::kTransmitQueueSize};
    bool m_sending = false;
    LinePace m_pace;
    bool m_roomAwaited = false;
    bool m_mayStop = false; ///< the board may stop the line with XOFF for as long as it likes
    Clock::time_point m_lastProgress;
    std::optional<QString> m_failure;
    std::condition_variable m_changed; ///< room in the queue, or a failure

    std::jthread m_thread; // last: it uses all of the above
};

} // namespace zrk
