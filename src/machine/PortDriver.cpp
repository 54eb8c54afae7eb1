#include "machine/PortDriver.h"

#include "machine/PortMessages.h"
#include "platform/EventLoop.h"
#include "platform/RuntimeFailure.h"

#include <boost/asio/post.hpp>

#include <algorithm>

namespace zrk {

namespace asio = boost::asio;

namespace {

// A wake-up for a byte or two costs more than the bytes; half the queue keeps the line busy long enough.
constexpr std::size_t kWorthwhileRoom = SerialPort::kTransmitQueueSize / 2;

} // namespace

PortDriver::PortDriver(EventLoop& loop, QString port, Limits limits)
    : m_loop(loop), m_portName(std::move(port)), m_limits(limits), m_pace(limits.lineRate) {}

PortDriver::~PortDriver() {
    m_io.stop();
    if (m_thread.joinable())
        m_thread.join();
}

void PortDriver::start(std::unique_ptr<PortDevice> device) {
    m_device = std::move(device);
    m_thread = std::jthread([this] { m_io.run(); });
}

void PortDriver::serve(Handshaking handshaking) {
    applyHandshaking(handshaking);
    m_device->discardReceived();
    asio::post(m_io, [this] {
        startReading();
        if (const auto interval = m_device->lookInterval(); interval.count() > 0)
            lookAfter(interval);
    });
}

bool PortDriver::isLost() const noexcept {
    const Lock lock(m_mutex);
    return m_failure.has_value();
}

qsizetype PortDriver::bytesWaiting() {
    const Lock lock(m_mutex);
    if (m_received.isEmpty())
        throwIfFailed();
    return m_received.size();
}

QByteArray PortDriver::read(qsizetype most) {
    Lock lock(m_mutex);
    if (m_received.isEmpty())
        throwIfFailed();
    QByteArray bytes;
    if (most >= m_received.size()) {
        bytes = std::exchange(m_received, {});
    } else {
        bytes = m_received.left(std::max<qsizetype>(most, 0));
        m_received.remove(0, bytes.size());
    }
    resumeReading(lock);
    return bytes;
}

void PortDriver::skip(char byte) {
    Lock lock(m_mutex);
    const auto other =
        std::find_if(m_received.cbegin(), m_received.cend(), [byte](char c) { return c != byte; });
    m_received.remove(0, other - m_received.cbegin());
    resumeReading(lock);
}

/// Resumes reading after bytes have been taken; releases the lock.
void PortDriver::resumeReading(Lock& lock) {
    if (!m_readingPaused || m_failure || m_received.size() > m_limits.received / 2)
        return;
    m_readingPaused = false;
    lock.unlock();
    asio::post(m_io, [this] { startReading(); });
}

void PortDriver::write(QByteArrayView bytes) {
    std::span<const char> rest(bytes.data(), static_cast<std::size_t>(bytes.size()));
    Lock lock(m_mutex);
    throwIfFailed();
    while (!rest.empty()) {
        rest = rest.subspan(m_queue.append(rest));
        // The thread finds by itself what is appended while it sends; waking it for every byte would cost
        // more than the bytes.
        if (!m_sending) {
            m_sending = true;
            m_lastProgress = Clock::now();
            lock.unlock();
            asio::post(m_io, [this] { startSending(); });
            lock.lock();
        }
        if (!rest.empty())
            m_changed.wait(lock, [this] { return m_failure || m_queue.room() > 0; });
        throwIfFailed();
    }
}

qsizetype PortDriver::transmitRoom() {
    const Lock lock(m_mutex);
    throwIfFailed();
    m_roomAwaited = m_queue.room() < kWorthwhileRoom;
    return static_cast<qsizetype>(m_queue.room());
}

qsizetype PortDriver::unsentBytes() const noexcept {
    const Lock lock(m_mutex);
    if (m_failure)
        return 0;
    // A driver that has released its bytes does not report what lies between it and the line.
    const std::size_t handedOn = std::max(m_device->unsentBytes(), m_pace.onLine(Clock::now()));
    return static_cast<qsizetype>(m_queue.size()) + static_cast<qsizetype>(handedOn);
}

void PortDriver::setHandshaking(Handshaking handshaking) {
    applyHandshaking(handshaking);
    const Lock lock(m_mutex);
    throwIfFailed();
}

void PortDriver::applyHandshaking(Handshaking handshaking) {
    const bool on = handshaking == Handshaking::XonXoff;
    {
        const Lock lock(m_mutex);
        m_mayStop = on;
        m_lastProgress = Clock::now();
        if (m_failure)
            return;
    }
    if (!m_device->setXonXoff(on))
        fail(port_messages::gone(m_portName, QStringLiteral("its flow control cannot be set")));
    // Some systems set DTR again together with the flow control.
    if (m_dtr)
        (void)m_device->setDtr(*m_dtr);
}

bool PortDriver::setDtr(bool on) {
    if (isLost() || !m_device->setDtr(on))
        return false;
    m_dtr = on;
    return true;
}

std::optional<LineErrors> PortDriver::lineErrors() const noexcept {
    const Lock lock(m_mutex);
    return m_failure ? std::nullopt : m_device->lineErrors();
}

void PortDriver::throwIfFailed() const {
    if (m_failure)
        throw RuntimeFailure(FailureKind::PortLost, *m_failure);
}

void PortDriver::reportGone(const ErrorCode& error) {
    fail(m_device->goneText(m_portName, error));
}

// Keeps the first failure. Nothing is started on the device after it.
void PortDriver::fail(QString description) {
    {
        const Lock lock(m_mutex);
        if (m_failure)
            return;
        m_failure = std::move(description);
    }
    asio::post(m_io, [this] {
        m_device->cancel();
        m_stallTimer.cancel();
        m_paceTimer.cancel();
        m_lookTimer.cancel();
    });
    m_changed.notify_all();
    m_loop.wake();
}

void PortDriver::startReading() {
    m_device->readSome(m_chunk, [this](const ErrorCode& error, std::size_t count) { onRead(error, count); });
}

// A pulled adapter may end an operation as if it had been cancelled; but nothing here is cancelled before a
// failure, and after the first failure fail() ignores the others.
void PortDriver::onRead(const ErrorCode& error, std::size_t count) {
    bool again = !error;
    {
        const Lock lock(m_mutex);
        m_received.append(m_chunk.data(), static_cast<qsizetype>(count));
        m_readingPaused = again && m_received.size() >= m_limits.received;
        again = again && !m_readingPaused && !m_failure;
    }
    if (error)
        return reportGone(error);
    m_loop.wake();
    if (again)
        startReading();
}

void PortDriver::startSending() {
    Lock lock(m_mutex);
    if (m_failure)
        return;
    const auto bytes = m_queue.front();
    const auto due = m_lastProgress + m_limits.stall;
    lock.unlock();
    if (!m_watchingForStall)
        watchForStall(due);
    sendFront(bytes);
}

void PortDriver::sendFront(std::span<const char> bytes) {
    const auto now = Clock::now();
    const std::size_t allowed = std::min(bytes.size(), m_pace.allowance(now));
    // Some milliseconds' worth at a time, unless there is no more.
    if (allowed < bytes.size() && m_pace.nextAllowance(now) > now)
        return waitForPace(m_pace.nextAllowance(now));
    m_askedAt = now;
    m_device->writeSome(bytes.first(allowed),
                        [this](const ErrorCode& error, std::size_t count) { onSent(error, count); });
}

void PortDriver::waitForPace(LinePace::TimePoint due) {
    m_paceTimer.expires_at(due);
    m_paceTimer.async_wait([this](const ErrorCode& error) {
        if (error)
            return;
        Lock lock(m_mutex);
        // A program that was stopped while it waited for the clock finds the stall timer due, too, but the
        // device has not been asked yet.
        m_lastProgress = Clock::now();
        const auto bytes = m_queue.front();
        lock.unlock();
        sendFront(bytes);
    });
}

void PortDriver::onSent(const ErrorCode& error, std::size_t count) {
    if (error)
        return reportGone(error);
    Lock lock(m_mutex);
    if (m_failure)
        return;
    m_queue.sent(count);
    const auto now = Clock::now();
    m_pace.sent(count, m_askedAt, now);
    if (count > 0)
        m_lastProgress = now;
    const auto next = m_queue.front();
    m_sending = !next.empty();
    const bool wake = m_roomAwaited && m_queue.room() >= kWorthwhileRoom;
    if (wake)
        m_roomAwaited = false;
    lock.unlock();
    m_changed.notify_all();
    if (wake)
        m_loop.wake();
    if (!next.empty())
        sendFront(next);
}

void PortDriver::lookAfter(std::chrono::milliseconds interval) {
    m_lookTimer.expires_after(interval);
    m_lookTimer.async_wait([this, interval](const ErrorCode& error) {
        if (error)
            return;
        Lock lock(m_mutex); // the owner's calls for counts read the same state
        const ErrorCode gone = m_device->look();
        lock.unlock();
        if (gone)
            return reportGone(gone);
        lookAfter(interval);
    });
}

// Runs one timer over many bytes, since restarting it for each would cost too much.
void PortDriver::watchForStall(Clock::time_point due) {
    m_watchingForStall = true;
    m_stallTimer.expires_at(due);
    m_stallTimer.async_wait([this](const ErrorCode& error) {
        m_watchingForStall = false;
        if (!error)
            onStallTimer();
    });
}

void PortDriver::onStallTimer() {
    Lock lock(m_mutex);
    if (!m_sending || m_failure)
        return;
    const auto now = Clock::now();
    if (m_mayStop)
        m_lastProgress = now;
    const auto due = m_lastProgress + m_limits.stall;
    lock.unlock();
    if (now < due)
        watchForStall(due);
    else
        fail(port_messages::stalled(m_portName, m_limits.stall));
}

} // namespace zrk
