#pragma once

#include "loader/TransferRate.h"
#include "serial/Link.h"

namespace zrk {

class ImageSlots;

/// What a user has to know after a failure that came after the flash header frame.
inline const QString kFlashStateUnknownText =
    QStringLiteral("The flash contents are in an unknown state: program the flash again.");

/// The first panel of the status bar. It shows port, device and state in words and the next step, or a remark,
/// such as how the last operation ended and what to check then; while an operation runs, what it does, how fast,
/// and the time left. Also checks the files of the slots.
class Activity {
  public:
    Activity(Link& link, ImageSlots& imageSlots);

    /// Updates the panel; runs by itself four times a second.
    void refresh();

    /// Returns the transfer that runs, or ran last.
    [[nodiscard]] const TransferRate& rate() const { return m_rate; }

    /// Sets what the port's line carries in bytes a second; 0 for a port without a line.
    void limitRate(std::uint32_t bytesPerSecond) { m_rate.limitTo(bytesPerSecond); }

  private:
    void followTransfer();
    void followUnsent();
    [[nodiscard]] QString stoppedLine() const;
    [[nodiscard]] QString operationText() const;
    [[nodiscard]] StatusRemark idleRemark() const;
    /// Returns the most likely cause of a failure and what to do; "" if unknown.
    [[nodiscard]] QString hint() const;
    [[nodiscard]] QString portText() const;
    [[nodiscard]] QStringList changedFiles() const;
    [[nodiscard]] QString nextStep() const;

    Link& m_link;
    ImageSlots& m_imageSlots;
    std::unique_ptr<Timer> m_timer;
    TransferRate m_rate;
    EventLoop::TimePoint m_nextFileCheck;
    std::int32_t m_lastSent = 0;
    int m_lastSlot = 0;
    qsizetype m_unsent = 0;
    EventLoop::TimePoint m_lineMoved; ///< when the last unsent byte left, or there was none
    bool m_transferring = false;
};

} // namespace zrk
