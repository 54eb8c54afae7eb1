#pragma once

#include <QString>

#include <cstdint>

namespace zrk {

/// The bytes of an image that were sent by a complete transfer.
struct SentImage {
    std::uint32_t crc32 = 0; ///< of exactly these bytes, as in zip and Ethernet
    std::int32_t bytes = 0;  ///< fewer than were announced when the file became shorter meanwhile

    bool operator==(const SentImage&) const = default;

    /// Returns eight upper-case hexadecimal digits.
    [[nodiscard]] QString crcText() const {
        return QStringLiteral("%1").arg(crc32, 8, 16, QLatin1Char('0')).toUpper();
    }
};

} // namespace zrk
