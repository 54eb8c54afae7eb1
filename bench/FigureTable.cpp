#include "FigureTable.h"

#include <cmath>
#include <cstdio>

namespace zrkbench {
namespace {

/// Prints three significant digits, without decimals for large numbers.
std::string shortNumber(double value) {
    const int before = value >= 1.0 ? static_cast<int>(std::log10(value)) + 1 : 1;
    char text[32];
    (void)std::snprintf(text, sizeof text, "%.*f", before >= 3 ? 0 : 3 - before, value);
    return text;
}

void print(const std::string& figure, const std::string& value, const std::string& reference,
           const std::string& ratio) {
    std::printf("| %s | %s | %s | %s |\n", figure.c_str(), value.c_str(), reference.c_str(), ratio.c_str());
    std::fflush(stdout);
}

} // namespace

void FigureTable::begin() {
    std::printf("| figure | value | limit or peer | ratio |\n|---|---:|---:|---:|\n");
    std::fflush(stdout);
}

void FigureTable::limited(const std::string& figure, const std::string& value, const std::string& limit,
                          double ratio) {
    print(figure, value, limit, percentText(ratio));
}

void FigureTable::compared(const std::string& figure, const std::string& value, const std::string& peer,
                           double ratio) {
    print(figure, value, peer, shortNumber(ratio) + " x");
}

std::string rateText(double bytesPerSecond) {
    std::string digits = std::to_string(std::llround(bytesPerSecond));
    for (auto at = static_cast<std::ptrdiff_t>(digits.size()) - 3; at > 0; at -= 3)
        digits.insert(static_cast<std::size_t>(at), 1, ',');
    return digits + " bytes/s";
}

std::string timeText(double seconds) {
    if (seconds < 1e-3)
        return shortNumber(seconds * 1e6) + " µs";
    return seconds < 1.0 ? shortNumber(seconds * 1e3) + " ms" : shortNumber(seconds) + " s";
}

std::string costText(double secondsPerMegabyte) {
    return shortNumber(secondsPerMegabyte) + " s/MB";
}

std::string memoryText(double mebibytes) {
    return shortNumber(mebibytes) + " MiB";
}

std::string percentText(double ratio) {
    char text[32];
    (void)std::snprintf(text, sizeof text, "%.2f %%", 100.0 * ratio);
    return text;
}

} // namespace zrkbench
