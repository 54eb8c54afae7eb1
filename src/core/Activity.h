#pragma once

#include "controls/Controls.h"
#include "core/TransferRate.h"
#include "platform/EventLoop.h"
#include "serial/SharedState.h"

namespace zrk {

class ComPort;
class ImageSlots;
class Transport;

/// What a user has to know after a failure in or after the flash header frame.
inline const QString kFlashStateUnknownText =
    QStringLiteral("The flash contents are in an unknown state: program the flash again.");

/// Keeps the first panel of the status bar: port, device and state in words; while an operation runs,
/// what it does, how fast, and how long it still takes. Also looks after the files of the slots.
class Activity {
  public:
    Activity(SharedState& state, Controls& controls, ComPort& port, Transport& transport,
             ImageSlots& imageSlots, EventLoop& loop);

    /// Brings the panel up to date; runs by itself four times a second.
    void refresh();

  private:
    void followTransfer();
    [[nodiscard]] QString operationText() const;
    [[nodiscard]] QString idleText() const;
    [[nodiscard]] QStringList changedFiles() const;

    SharedState& m_state;
    Controls& m_controls;
    ComPort& m_port;
    Transport& m_transport;
    ImageSlots& m_imageSlots;
    EventLoop& m_loop;
    std::unique_ptr<Timer> m_timer;
    TransferRate m_rate;
    EventLoop::TimePoint m_nextFileCheck;
    std::int32_t m_lastSent = 0;
    bool m_transferring = false;
};

} // namespace zrk
