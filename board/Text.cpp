#include "board/Text.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <charconv>
#include <cmath>
#include <cstdio>

namespace zrkboard {

std::string hex(std::uint64_t value, int digits) {
    std::array<char, 24> text{};
    std::snprintf(text.data(), text.size(), "0x%0*llX", digits, static_cast<unsigned long long>(value));
    return text.data();
}

std::string byteText(std::uint8_t byte) {
    std::string text = hex(byte, 2);
    if (byte >= 0x20 && byte < 0x7F)
        text += std::string(" '") + static_cast<char>(byte) + "'";
    return text;
}

std::string lowerCase(std::string_view text) {
    std::string lower(text);
    std::transform(lower.begin(), lower.end(), lower.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return lower;
}

std::optional<std::uint64_t> parseNumber(std::string_view text, int base) {
    if (text.starts_with("0x") || text.starts_with("0X")) {
        base = 16;
        text.remove_prefix(2);
    }
    std::uint64_t value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value, base);
    if (text.empty() || error != std::errc() || end != text.data() + text.size())
        return std::nullopt;
    return value;
}

std::optional<std::int64_t> parseMilliseconds(std::string_view text) {
    double scale = 1000;
    if (text.ends_with("ms")) {
        scale = 1;
        text.remove_suffix(2);
    }
    double value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    constexpr double kLongest = 1e9;
    if (text.empty() || error != std::errc() || end != text.data() + text.size() || !(value >= 0) ||
        value * scale > kLongest)
        return std::nullopt;
    return std::llround(value * scale);
}

std::optional<std::string> unescape(std::string_view text) {
    std::string plain;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '\\') {
            plain += text[i];
            continue;
        }
        if (++i == text.size())
            return std::nullopt;
        switch (text[i]) {
        case 'r':
            plain += '\r';
            break;
        case 'n':
            plain += '\n';
            break;
        case 't':
            plain += '\t';
            break;
        case '\\':
            plain += '\\';
            break;
        case 'x': {
            const auto value = parseNumber(text.substr(i + 1, 2), 16);
            if (!value || i + 2 >= text.size())
                return std::nullopt;
            plain += static_cast<char>(*value);
            i += 2;
            break;
        }
        default:
            return std::nullopt;
        }
    }
    return plain;
}

std::string quoted(std::string_view text) {
    constexpr std::size_t kMost = 80;
    std::string shown = "\"";
    for (const char character : text.substr(0, kMost)) {
        const auto byte = static_cast<std::uint8_t>(character);
        if (byte >= 0x20 && byte < 0x7F)
            shown += character;
        else
            shown += "\\" + hex(byte, 2).substr(1);
    }
    return shown + (text.size() > kMost ? "...\"" : "\"");
}

} // namespace zrkboard
