#include "machine/PortDriver.h"

#include "machine/QtEventLoop.h"
#include "platform/RuntimeFailure.h"

#include <gtest/gtest.h>

#include <atomic>
#include <optional>
#include <thread>

namespace {

using namespace std::chrono_literals;
using ErrorCode = boost::system::error_code;

/// An adapter whose driver leaves the read waiting when it is pulled.
struct SilentDevice : zrk::PortDevice {
    explicit SilentDevice(const std::atomic<bool>& isPulled) : pulled(isPulled) {}

    void readSome(std::span<char>, Done) override {}
    void writeSome(std::span<const char>, Done) override {}
    void cancel() noexcept override {}
    [[nodiscard]] std::chrono::milliseconds lookInterval() const override { return 1ms; }
    [[nodiscard]] ErrorCode look() noexcept override {
        return pulled ? make_error_code(boost::system::errc::no_such_device) : ErrorCode();
    }
    [[nodiscard]] QString goneText(const QString& port, const ErrorCode& error) const override {
        return port + (error == boost::system::errc::no_such_device ? " was pulled" : " failed otherwise");
    }
    void discardReceived() noexcept override {}
    [[nodiscard]] bool setXonXoff(bool) noexcept override { return true; }
    [[nodiscard]] bool setDtr(bool) override { return true; }
    [[nodiscard]] std::size_t unsentBytes() const noexcept override { return 0; }

    const std::atomic<bool>& pulled;
};

/// A device that detects calls on two threads at a time; each check lasts until the owner calls, too.
struct MeetingDevice final : SilentDevice {
    explicit MeetingDevice(const std::atomic<bool>& isPulled) : SilentDevice(isPulled) {}

    [[nodiscard]] ErrorCode look() noexcept override {
        enter();
        isLooking = true;
        isLooking.notify_one();
        isAsking.wait(false);
        leave();
        isLooking = false;
        return {};
    }
    [[nodiscard]] std::size_t unsentBytes() const noexcept override {
        enter();
        leave();
        return 0;
    }
    [[nodiscard]] std::optional<zrk::LineErrors> lineErrors() const noexcept override {
        enter();
        leave();
        return zrk::LineErrors{};
    }
    void enter() const {
        if (++inside > 1)
            met = true;
    }
    void leave() const {
        for (int i = 0; i < 100; ++i)
            std::this_thread::yield();
        --inside;
    }

    void setAsking(bool asking) {
        isAsking = asking;
        isAsking.notify_one();
    }

    std::atomic<bool> isLooking = false;
    std::atomic<bool> isAsking = false;
    mutable std::atomic<int> inside = 0;
    mutable std::atomic<bool> met = false;
};

TEST(PortDriver, ChecksTheDeviceWhileItsErrorsAreNotCounted) {
    zrk::QtEventLoop loop;
    const std::atomic<bool> pulled = false;
    zrk::PortDriver port(loop, "COM1", {10s, 100, 0});
    auto owned = std::make_unique<MeetingDevice>(pulled);
    MeetingDevice& device = *owned;
    port.start(std::move(owned));
    port.serve(zrk::Handshaking::None);
    for (int round = 0; round < 10; ++round) {
        for (const bool errors : {true, false}) {
            device.isLooking.wait(false);
            device.setAsking(true);
            EXPECT_TRUE(errors ? port.lineErrors().has_value() : port.unsentBytes() == 0);
            device.setAsking(false);
        }
    }
    device.setAsking(true); // ends a check that has begun meanwhile
    EXPECT_FALSE(device.met);
}

TEST(PortDriver, ADeviceThatIsPulledSilentlyIsFoundMissing) {
    zrk::QtEventLoop loop;
    std::atomic<bool> pulled = false;
    zrk::PortDriver port(loop, "COM1", {10s, 100, 0});
    port.start(std::make_unique<SilentDevice>(pulled));
    port.serve(zrk::Handshaking::None);
    const auto timer = loop.createTimer([&pulled] { pulled = true; });
    timer->start(20ms);
    while (!pulled) {
        EXPECT_FALSE(port.isLost());
        loop.wait();
    }
    timer->stop();
    while (!port.isLost())
        loop.wait(); // the driver wakes it
    try {
        (void)port.bytesWaiting();
        FAIL() << "the port is lost";
    } catch (const zrk::RuntimeFailure& failure) {
        EXPECT_EQ(failure.description(), "COM1 was pulled");
    }
}

} // namespace
