#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace zrkboard {

// Returns "0x" and at least so many upper-case digits.
[[nodiscard]] std::string hex(std::uint64_t value, int digits);

// Returns a byte as the log shows it: 0x41 'A', or 0x03 if it does not print.
[[nodiscard]] std::string byteText(std::uint8_t byte);

[[nodiscard]] std::string lowerCase(std::string_view text);

// Reads a number that is the whole text: decimal, or hexadecimal after "0x"; with base 16 always hexadecimal.
[[nodiscard]] std::optional<std::uint64_t> parseNumber(std::string_view text, int base = 10);

// Reads a time that is not negative: seconds, with a fraction if need be ("0.25"), or milliseconds before
// "ms" ("250ms"). Returns milliseconds.
[[nodiscard]] std::optional<std::int64_t> parseMilliseconds(std::string_view text);

// Resolves \r, \n, \t, \\ and \xHH. Empty for any other use of a backslash.
[[nodiscard]] std::optional<std::string> unescape(std::string_view text);

// Quotes the text for a message, at most its first 80 characters. Unprintable characters become \xHH, so that
// foreign text cannot control the terminal.
[[nodiscard]] std::string quoted(std::string_view text);

} // namespace zrkboard
