#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace zrkboard {

struct SampleImage {
    std::string file;
    std::string section; // of the INI file
    std::string key;
    std::string address;
    std::string title; // the text that the image begins with
    std::size_t size = 0;
};

// Returns one for each image slot, small enough for a bring-up at 115200 baud in some five seconds.
[[nodiscard]] const std::vector<SampleImage>& sampleImages();

// Returns the title, then bytes that look random and are the same on every machine and in every run.
[[nodiscard]] std::vector<std::uint8_t> sampleContent(const SampleImage& image);

// Writes all of them and zrk-loader.INI into the folder, which is made if it is missing. Throws
// std::runtime_error, and leaves the folder as it was, if one of them exists with other content or cannot be
// written.
void writeSampleImages(const std::filesystem::path& folder);

} // namespace zrkboard
