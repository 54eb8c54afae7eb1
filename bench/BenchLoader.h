#pragma once

#include "QuietLoader.h"

#include <chrono>

namespace zrkbench {

/// The times of one image transfer as the console shows them.
struct TransferTimes {
    using TimePoint = std::chrono::steady_clock::time_point;
    TimePoint first;         ///< the first code byte is handed over
    TimePoint handedOver;    ///< the last one
    TimePoint answered;      ///< the board has confirmed all of them
    double cpuSeconds = 0.0; ///< processor time of this process between first and handedOver

    [[nodiscard]] double lineSeconds() const {
        return std::chrono::duration<double>(answered - first).count();
    }
    /// Returns the seconds from the last byte's hand-over to the answer.
    [[nodiscard]] double answerSeconds() const {
        return std::chrono::duration<double>(answered - handedOver).count();
    }
};

/// A loader with images, on the port of a simulated board.
class BenchLoader {
  public:
    struct ImageSizes {
        qsizetype secondary = 1;
        qsizetype uboot = 1;
        qsizetype flash = 1;
    };

    BenchLoader(const QString& device, const ImageSizes& sizes, std::optional<std::uint32_t> lineRate = {});

    [[nodiscard]] QuietLoader& quiet() { return m_quiet; }
    [[nodiscard]] zrk::Loader& loader() { return m_quiet.loader(); }

    /// Brings the board up; the times are those of the secondary executable's transfer. These throw
    /// std::runtime_error if the operation fails.
    [[nodiscard]] TransferTimes bringUp();

    /// Downloads U-Boot after that.
    [[nodiscard]] TransferTimes download();

    /// Programs the flash; the times are those of the data frame.
    [[nodiscard]] TransferTimes programFlash();

  private:
    void fillSlot(int slot, const QString& file, const QString& address);
    [[nodiscard]] TransferTimes timed(const QString& begin, const QString& end, const QString& answer,
                                      const std::function<void()>& operation);

    QuietLoader m_quiet;
};

} // namespace zrkbench
