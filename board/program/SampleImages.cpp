#include "board/program/SampleImages.h"

#include "board/Markers.h"

#include <fstream>
#include <random>
#include <stdexcept>

namespace zrkboard {

namespace {

constexpr std::size_t kKiB = 1024;
constexpr const char* kIniFile = "zrk-loader.INI";

void writeFile(const std::filesystem::path& path, const char* data, std::size_t size) {
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    file.write(data, static_cast<std::streamsize>(size));
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

} // namespace

const std::vector<SampleImage>& sampleImages() {
    // The SDRAM ranges leave the words at 0x80000000 and 0x82000000 alone, which are reserved.
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

void writeSampleImages(const std::filesystem::path& folder) {
    std::error_code error;
    std::filesystem::create_directories(folder, error);
    if (error)
        throw std::runtime_error("cannot make the folder " + folder.string() + ": " + error.message());
    for (const SampleImage& image : sampleImages()) {
        const auto content = sampleContent(image);
        writeFile(folder / image.file, reinterpret_cast<const char*>(content.data()), content.size());
    }
    const std::string ini = iniText();
    writeFile(folder / kIniFile, ini.data(), ini.size());
}

} // namespace zrkboard
