#include "board/program/SampleImages.h"

#include "board/Markers.h"

#include <fstream>
#include <iterator>
#include <map>
#include <random>
#include <stdexcept>

namespace zrkboard {

namespace fs = std::filesystem;

namespace {

constexpr std::size_t kKiB = 1024;
constexpr const char* kIniFile = "zrk-loader.INI";

void writeFile(const fs::path& path, const std::string& content) {
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    file.write(content.data(), static_cast<std::streamsize>(content.size()));
    file.close();
    if (!file)
        throw std::runtime_error("cannot write " + path.string());
}

std::string iniText() {
    std::string text;
    std::string section;
    for (const SampleImage& image : sampleImages()) {
        if (image.section != section) {
            text += (section.empty() ? "[" : "\n[") + image.section + "]\n";
            section = image.section;
        }
        text += image.key + "=" + image.file + "," + image.address + "\n";
    }
    return text;
}

// Returns the contents by name.
std::map<std::string, std::string> sampleFiles() {
    std::map<std::string, std::string> files{{kIniFile, iniText()}};
    for (const SampleImage& image : sampleImages()) {
        const auto content = sampleContent(image);
        files.emplace(image.file, std::string(content.begin(), content.end()));
    }
    return files;
}

bool holds(const fs::path& path, const std::string& content) {
    std::ifstream file(path, std::ios::binary);
    return file && std::string(std::istreambuf_iterator<char>(file), {}) == content;
}

} // namespace

const std::vector<SampleImage>& sampleImages() {
    // The SDRAM ranges leave out the reserved words at 0x80000000 and 0x82000000.
    static const std::vector<SampleImage> images{
        {"primary.bin", "BINFILES", "PRIMARY", "0x0000", std::string(kPrimaryBootMarker), 12 * kKiB},
        {"secondary.bin", "BINFILES", "SECONDARY", "0x80000004", "ZRK SAMPLE SECONDARY PROGRAM", 40 * kKiB},
        {"flash.bin", "BINFILES", "FLASH", "0x00000000", "ZRK SAMPLE FLASH IMAGE", 64 * kKiB},
        {"pg_sibl.bin", "BINFILES", "PG_SIBL", "0x0000", std::string(kFlashProgrammerMarker), 8 * kKiB},
        {"u-boot.ubt", "IMGFILES", "UBOOT", "0x80100000", "ZRK SAMPLE U-BOOT", 64 * kKiB},
        {"rootfs.img", "IMGFILES", "ROOTFS", "0x82800000", "ZRK SAMPLE ROOT FILE SYSTEM", 128 * kKiB},
        {"kernel.img", "IMGFILES", "KERNEL", "0x80800000", "ZRK SAMPLE KERNEL", 160 * kKiB},
    };
    return images;
}

std::vector<std::uint8_t> sampleContent(const SampleImage& image) {
    const std::string head = image.title + "\r\n";
    std::vector<std::uint8_t> content(head.begin(), head.end());
    std::seed_seq seed(image.file.begin(), image.file.end());
    std::mt19937 random(seed);
    while (content.size() < image.size)
        content.push_back(static_cast<std::uint8_t>(random() >> 24));
    return content;
}

void writeSampleImages(const fs::path& folder) {
    std::error_code error;
    fs::create_directories(folder, error);
    if (error)
        throw std::runtime_error("cannot make the folder " + folder.string() + ": " + error.message());
    std::map<fs::path, std::string> missing;
    for (const auto& [name, content] : sampleFiles()) {
        const fs::path path = folder / name;
        if (!fs::exists(fs::symlink_status(path)))
            missing.emplace(path, content);
        else if (!holds(path, content))
            throw std::runtime_error(path.string() +
                                     " exists with other content and was kept, and nothing was "
                                     "written; move it away or name another folder");
    }
    std::vector<fs::path> written;
    try {
        for (const auto& [path, content] : missing) {
            written.push_back(path);
            writeFile(path, content);
        }
    } catch (const std::runtime_error&) {
        for (const fs::path& path : written)
            fs::remove(path, error);
        throw;
    }
}

} // namespace zrkboard
