#pragma once

#include <string>

namespace zrkbench {

/// The figures as a Markdown table on standard output, each row as soon as it is known.
class FigureTable {
  public:
    /// Prints the table's head.
    static void begin();

    /// Prints a figure beside its best or worst possible value. The ratio, 1 for the limit itself, is shown
    /// in per cent.
    static void limited(const std::string& figure, const std::string& value, const std::string& limit,
                        double ratio);

    /// Prints a figure beside another way to do the same, measured in the same run, with a ratio like "2.0
    /// x".
    static void compared(const std::string& figure, const std::string& value, const std::string& peer,
                         double ratio);
};

/// Return numbers with their units: "11,518 bytes/s", "1.2 ms", "0.52 s/MB", "64.2 MiB".
[[nodiscard]] std::string rateText(double bytesPerSecond);
[[nodiscard]] std::string timeText(double seconds);
[[nodiscard]] std::string costText(double secondsPerMegabyte);
[[nodiscard]] std::string memoryText(double mebibytes);
[[nodiscard]] std::string percentText(double ratio);

} // namespace zrkbench
