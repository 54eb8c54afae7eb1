#pragma once

#include <QString>

#include <array>
#include <cstdint>

namespace zrk {

/// The conversions between address and size texts and numbers. Pure functions; each fails with
/// RuntimeFailure of the kind it names.

/// Returns "&h..." for a text that begins with exactly "0x" or "0h"; any other text unchanged.
[[nodiscard]] QString NormalizeHex(const QString& text);

/// Returns the number that a text begins with, 0 if there is none. Exact from 0 to 0x7FFFFFFF; a value with
/// the top bit set, or below zero, becomes 0x8000 + (value AND 0x7FFF). Fails with Overflow above 0x7FFFFFFF
/// (decimal) or with more than 8 hexadecimal digits.
[[nodiscard]] std::int32_t HexToLong(const QString& text);

/// Returns byte n of the text's 32-bit value; n = 0 is the most significant, n = 3 the least, 0 from n = 4
/// on. Fails with TypeMismatch or Overflow unless the whole text is one number, with InvalidArgument for n
/// below 0 and Overflow for n above 16383.
[[nodiscard]] std::uint8_t HexByte(const QString& text, std::int16_t n);

/// Returns the four bytes of the text's value as they go on the line, least significant first: HexByte for n
/// = 3, 2, 1, 0.
[[nodiscard]] std::array<std::uint8_t, 4> lineBytes(const QString& text);

/// Returns the text without its last character; fails with InvalidArgument for an empty text.
[[nodiscard]] QString DropLastChar(const QString& text);

/// Returns the upper-case hexadecimal form, without leading zeros, of a text that is one number: "&h" and
/// digits of at most 32 bits, or a decimal within the signed 32-bit range (a fraction is rounded to the
/// nearest integer, ties to even; a negative number is its 8-digit two's complement). Fails with TypeMismatch
/// or Overflow.
[[nodiscard]] QString strictHexForm(const QString& text);

} // namespace zrk
