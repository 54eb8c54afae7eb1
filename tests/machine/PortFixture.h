#pragma once

#include "Pty.h"
#include "machine/MachinePorts.h"
#include "machine/QtEventLoop.h"
#include "platform/RuntimeFailure.h"

#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <string>

namespace zrk::test {

constexpr LineSettings kLine{115200, 'N', 8, 1};

/// Returns the failure that an action ends with, as "<kind>: <description>" of the kinds a port has; "none"
/// if it ends well.
template <class Action>
std::string failureOf(Action&& action) {
    try {
        action();
    } catch (const RuntimeFailure& failure) {
        const char* kind = failure.kind() == FailureKind::PortNotOpened ? "not opened: "
                           : failure.kind() == FailureKind::PortNotOpen ? "not open: "
                           : failure.kind() == FailureKind::PortLost    ? "lost: "
                                                                        : "another kind: ";
        return kind + failure.description().toStdString();
    }
    return "none";
}

/// Returns the calls on the port that do not end with this failure.
inline std::string callsOf(SerialPort& port, const std::string& expected) {
    std::string wrong;
    const auto look = [&](const char* call, auto&& action) {
        if (const std::string failure = failureOf(action); failure != expected)
            wrong += std::string(call) + " gave " + failure + "\n";
    };
    look("bytesWaiting", [&] { (void)port.bytesWaiting(); });
    look("read", [&] { (void)port.read(1); });
    look("write", [&] { port.write("x"); });
    look("transmitRoom", [&] { (void)port.transmitRoom(); });
    return wrong;
}

/// Returns all 256 values, again and again.
inline QByteArray pattern(qsizetype size) {
    QByteArray bytes;
    for (qsizetype i = 0; i < size; ++i)
        bytes += static_cast<char>((i + i / 256) & 0xFF);
    return bytes;
}

/// The real event loop, which counts how often it was woken.
class CountingLoop final : public EventLoop {
  public:
    void yield() override { m_loop.yield(); }
    void wait() override { m_loop.wait(); }
    void wake() override {
        ++m_wakes;
        m_loop.wake();
    }
    void post(std::function<void()> task) override { m_loop.post(std::move(task)); }
    [[nodiscard]] TimePoint now() const override { return m_loop.now(); }
    [[nodiscard]] std::unique_ptr<Timer> createTimer(std::function<void()> tick) override {
        return m_loop.createTimer(std::move(tick));
    }

    [[nodiscard]] int wakes() const { return m_wakes; }

  private:
    QtEventLoop m_loop;
    std::atomic<int> m_wakes{0};
};

class PortFixture : public ::testing::Test {
  protected:
    /// Waits in the event loop, which only a wake-up ends, until the condition holds.
    template <class Condition>
    bool waitUntil(Condition&& condition) {
        bool late = false;
        const auto limit = loop.createTimer([&late] { late = true; });
        limit->start(std::chrono::minutes(10)); // only a fault lasts that long
        while (!condition()) {
            if (late)
                return false;
            loop.wait();
        }
        return true;
    }

    /// Runs only the event loop.
    void idle(std::chrono::milliseconds time) {
        bool over = false;
        const auto timer = loop.createTimer([&over] { over = true; });
        timer->start(time);
        while (!over)
            loop.wait();
    }

    /// Reads until that many bytes have come.
    QByteArray readAll(SerialPort& from, qsizetype count) {
        QByteArray bytes;
        waitUntil([&] { return (bytes += from.read(count - bytes.size())).size() >= count; });
        return bytes;
    }

    /// Returns true once all that was written has left, within the limit.
    bool drains(std::chrono::milliseconds limit) {
        const auto end = loop.now() + limit;
        const auto look = loop.wakeEvery(std::chrono::milliseconds(1));
        while (port->unsentBytes() > 0 && loop.now() < end)
            loop.wait();
        return port->unsentBytes() == 0 && !port->isLost();
    }

    /// Opens COM1, which is `line`, whatever its speed; a stall of the given length breaks it.
    [[nodiscard]] std::unique_ptr<SerialPort> opened(const MachinePorts::Options& options,
                                                     Handshaking handshaking = Handshaking::None) {
        return MachinePorts(loop, PortNames({{1, line.device()}}), options).open(1, kLine, handshaking);
    }
    void openPort(std::chrono::milliseconds stall = std::chrono::minutes(10), qsizetype receive = 1 << 20) {
        port = opened({stall, receive, 0});
    }

    [[nodiscard]] std::string name() const { return "COM1 (" + line.device().toStdString() + ")"; }

    CountingLoop loop;
    Pty line;
    std::unique_ptr<SerialPort> port;
};

} // namespace zrk::test
