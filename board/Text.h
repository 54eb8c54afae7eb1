#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace zrkboard {

// "0x" and at least so many upper-case digits.
[[nodiscard]] std::string hex(std::uint64_t value, int digits);

// A byte for the log: 0x41 'A', or 0x03 where it does not print.
[[nodiscard]] std::string byteText(std::uint8_t byte);

[[nodiscard]] std::string lowerCase(std::string_view text);

// The whole text is a number: decimal, or hexadecimal behind "0x"; with base 16 hexadecimal in any case.
[[nodiscard]] std::optional<std::uint64_t> parseNumber(std::string_view text, int base = 10);

// Seconds, with a fraction if need be ("0.25"), or milliseconds behind "ms" ("250ms"); not negative. In
// milliseconds.
[[nodiscard]] std::optional<std::int64_t> parseMilliseconds(std::string_view text);

// Resolves \r, \n, \t, \\ and \xHH. Empty for any other use of a backslash.
[[nodiscard]] std::optional<std::string> unescape(std::string_view text);

// The text in quotes for a message, no more than its first 80 characters: what others have written must not
// steer the terminal, so what does not print is \xHH.
[[nodiscard]] std::string quoted(std::string_view text);

} // namespace zrkboard
