#pragma once

#include "boot/WaitDialogView.h"
#include "loader/Loader.h"
#include "machine/MachinePorts.h"
#include "machine/QtEventLoop.h"
#include "platform/FileDialog.h"
#include "platform/MessageBoxes.h"

#include <QTemporaryDir>

#include <chrono>

namespace zrkbench {

/// The times of one image transfer as a person sees them in the console.
struct TransferTimes {
    using TimePoint = std::chrono::steady_clock::time_point;
    TimePoint first;         ///< the first code byte is handed over
    TimePoint handedOver;    ///< the last one
    TimePoint answered;      ///< the board has confirmed all of them
    double cpuSeconds = 0.0; ///< processor time of this process between first and handedOver

    [[nodiscard]] double handOverSeconds() const {
        return std::chrono::duration<double>(handedOver - first).count();
    }
    [[nodiscard]] double lineSeconds() const {
        return std::chrono::duration<double>(answered - first).count();
    }
};

/// A loader without a window, on the port of a simulated board.
class BenchLoader {
  public:
    /// Makes image files of these sizes for the primary boot (from the board's samples), the secondary
    /// executable, and the flash.
    BenchLoader(const QString& device, qsizetype secondarySize, qsizetype flashSize,
                std::optional<std::uint32_t> lineRate = {});
    ~BenchLoader();

    /// Brings the board up; the times are those of the secondary executable's transfer.
    [[nodiscard]] TransferTimes bringUp();

    /// Programs the flash; the times are those of the data frame.
    [[nodiscard]] TransferTimes programFlash();

  private:
    class Silent;
    void fillSlot(int slot, const QString& file, const QString& address);
    [[nodiscard]] TransferTimes timed(const QString& begin, const QString& end, const QString& answer,
                                      const std::function<void()>& operation);

    QTemporaryDir m_folder;
    zrk::QtEventLoop m_loop;
    std::unique_ptr<Silent> m_silent;
    zrk::MachinePorts m_ports;
    std::unique_ptr<zrk::Loader> m_loader;
};

} // namespace zrkbench
