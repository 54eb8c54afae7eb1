#pragma once

#include "board/FrameReader.h"

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

// The flash programmer's frames (numbers hexadecimal, all fields least significant byte first). Each one:
//
//     02 | length of the whole frame, 4 bytes | command | payload | trailer, 2 bytes | 03
//
//     version request      02 | 0A 00 00 00 | A6 | A6 | 00 00 | 03
//     header               02 | 18 00 00 00 | AE | address, 4 bytes | size, 4 bytes | 03 00 00 00 | 01 | 00 |
//                          erase flag: 00 or 01 | 00 00 | 03
//     data                 02 | size + 9, 4 bytes | AF | size bytes | 00 00 | 03
//     end of data          02 | 0C 00 00 00 | A3 | A3 00 00 | 00 00 | 03
//     complete             02 | 0A 00 00 00 | B1 | B1 | 00 00 | 03
//
//     acknowledgement      02 | 0A 00 00 00 | 06 | 06 | 17 00 | 03
//     version information  02 | length, 4 bytes | A6 | text | 17 00 | 03

namespace zrkboard {

[[nodiscard]] FrameLayout versionRequestLayout();
[[nodiscard]] FrameLayout headerLayout();
[[nodiscard]] FrameLayout dataLayout(std::uint32_t imageSize);
[[nodiscard]] FrameLayout endOfDataLayout();
[[nodiscard]] FrameLayout completeLayout();

struct FlashHeader {
    std::uint32_t address = 0;
    std::uint32_t size = 0;
    bool erase = false;
};

// Reads the 24 bytes of a header frame.
[[nodiscard]] FlashHeader readFlashHeader(const std::vector<std::uint8_t>& frame);

[[nodiscard]] std::vector<std::uint8_t> acknowledgement();

// With `claimed`, puts that into the length field, and cuts the text or fills it up with dots to agree with
// it where possible (9 to 32767).
[[nodiscard]] std::vector<std::uint8_t> versionInformation(std::string_view text,
                                                           std::optional<std::uint32_t> claimed);

} // namespace zrkboard
