#include "board/PromptCommands.h"

#include "board/Text.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <sstream>

namespace zrkboard {

namespace {

constexpr std::string_view kVersion = "ZRK secondary program (simulated board) 1.0";
constexpr std::uint64_t kDumpDefault = 64;
constexpr std::uint64_t kDumpMost = 4096;
constexpr std::int64_t kLongestChatter = 3'600'000; // ms

// "80000004: 5A 52 4B 20 ...  ZRK ..."
std::string dumpLine(std::uint64_t address, const std::vector<std::uint8_t>& bytes) {
    std::array<char, 16> text{};
    std::snprintf(text.data(), text.size(), "%08llX:", static_cast<unsigned long long>(address));
    std::string line = text.data();
    std::string characters;
    for (const std::uint8_t byte : bytes) {
        std::snprintf(text.data(), text.size(), " %02X", static_cast<unsigned>(byte));
        line += text.data();
        characters += byte >= 0x20 && byte < 0x7F ? static_cast<char>(byte) : '.';
    }
    constexpr std::size_t kCharacterColumn = 9 + 16 * 3 + 2;
    line.resize(kCharacterColumn, ' ');
    return line + characters;
}

std::string imageName(char command) {
    switch (command) {
    case 'p':
        return "secondary program";
    case 'u':
        return "boot loader image";
    case 'r':
        return "root file system";
    default:
        return "kernel";
    }
}

} // namespace

PromptCommands::PromptCommands(Chip& chip, const LoadedImages& loaded)
    : m_chip(chip), m_loaded(loaded), m_variables{{"baudrate", "115200"},
                                                  {"bootargs", "console=ttyS0,115200 root=/dev/ram0"},
                                                  {"bootdelay", "3"}} {}

std::optional<Duration> PromptCommands::run(const std::string& line) {
    std::istringstream stream(line);
    Words words;
    for (std::string word; stream >> word;)
        words.push_back(word);
    if (words.empty())
        return std::nullopt;

    const std::string& name = words.front();
    if (name == "help")
        help();
    else if (name == "version")
        sayLine(std::string(kVersion));
    else if (name == "md")
        memoryDump(words);
    else if (name == "crc32")
        checksum(words);
    else if (name == "setenv")
        setVariable(words);
    else if (name == "printenv")
        printVariables(words);
    else if (name == "boot")
        boot();
    else if (name == "chatter")
        return chatter(words);
    else if (name == "reset")
        m_chip.requestReset();
    else
        sayLine("Unknown command '" + name + "' - try 'help'");
    return std::nullopt;
}

void PromptCommands::help() {
    for (const char* line :
         {"boot                 start the loaded kernel", "chatter SECONDS      talk without a pause",
          "crc32 ADDRESS COUNT  checksum of COUNT bytes of SDRAM", "help                 this list",
          "md ADDRESS [COUNT]   show COUNT bytes of SDRAM", "printenv [NAME]      show variables",
          "reset                restart at the boot ROM", "setenv NAME [VALUE]  set a variable, or delete it",
          "version              show the version"})
        sayLine(line);
}

void PromptCommands::memoryDump(const Words& words) {
    const auto address = parseNumber(words.size() > 1 ? words[1] : std::string(), 16);
    const auto count = words.size() > 2 ? parseNumber(words[2]) : kDumpDefault;
    if (words.size() > 3 || !address || !count) {
        sayLine("usage: md ADDRESS [COUNT], ADDRESS hexadecimal, COUNT decimal or 0x");
    } else if (*count < 1 || *count > kDumpMost) {
        sayLine("md: COUNT is 1 to " + std::to_string(kDumpMost));
    } else if (!m_chip.sdram().contains(*address, *count)) {
        sayLine("md: " + std::to_string(*count) + " bytes at " + hex(*address, 8) +
                " are not in SDRAM (0x80000000 to 0x83FFFFFF)");
    } else {
        for (std::uint64_t done = 0; done < *count; done += 16)
            sayLine(dumpLine(*address + done, m_chip.sdram().read(*address + done, std::min<std::uint64_t>(
                                                                                       16, *count - done))));
    }
}

void PromptCommands::checksum(const Words& words) {
    const auto address = parseNumber(words.size() == 3 ? words[1] : std::string(), 16);
    const auto count = parseNumber(words.size() == 3 ? words[2] : std::string());
    if (!address || !count)
        return sayLine("usage: crc32 ADDRESS COUNT, ADDRESS hexadecimal, COUNT decimal or 0x");
    if (!m_chip.sdram().contains(*address, *count))
        return sayLine("crc32: " + std::to_string(*count) + " bytes at " + hex(*address, 8) +
                       " are not in SDRAM (0x80000000 to 0x83FFFFFF)");
    std::uint32_t sum = 0xFFFFFFFF;
    for (std::uint64_t done = 0; done < *count; done += kDumpMost) {
        for (std::uint32_t byte :
             m_chip.sdram().read(*address + done, std::min<std::uint64_t>(kDumpMost, *count - done))) {
            sum ^= byte;
            for (int bit = 0; bit < 8; ++bit)
                sum = (sum >> 1U) ^ ((sum & 1U) != 0 ? 0xEDB88320U : 0U);
        }
    }
    sayLine("crc32 of " + std::to_string(*count) + " bytes at " + hex(*address, 8) + " ==> " + hex(~sum, 8));
}

void PromptCommands::setVariable(const Words& words) {
    if (words.size() < 2)
        return sayLine("usage: setenv NAME [VALUE]");
    if (words.size() == 2) {
        m_variables.erase(words[1]);
        return;
    }
    std::string value = words[2];
    for (std::size_t i = 3; i < words.size(); ++i)
        value.append(" ").append(words[i]);
    m_variables[words[1]] = value;
}

void PromptCommands::printVariables(const Words& words) {
    if (words.size() > 1 && !m_variables.contains(words[1]))
        return sayLine("printenv: '" + words[1] + "' is not defined");
    for (const auto& [name, value] : m_variables) {
        if (words.size() == 1 || words[1] == name)
            sayLine(std::string(name).append("=").append(value));
    }
}

void PromptCommands::boot() {
    Duration after = Duration::zero();
    const auto next = [this, &after](const std::string& line) {
        sayLine(line, after);
        after += std::chrono::milliseconds(40);
    };
    next("## Images in SDRAM:");
    for (const auto& [command, header] : m_loaded)
        next("   " + hex(header.address, 8) + "  " + imageName(command) + ", " + std::to_string(header.size) +
             " bytes");
    if (!m_loaded.contains('k'))
        return next("boot: no kernel was loaded");
    next("## Starting kernel at " + hex(m_loaded.at('k').address, 8) + " ...");
    next("[    0.000000] Machine: ZRK6924 demo board (simulated)");
    next("[    0.000000] Memory: 64MB at 0x80000000");
    next("[    0.000000] Kernel command line: " + m_variables["bootargs"]);
    next("[    0.210000] Serial: 1 port, ttyS0 at 115200");
    next("[    0.480000] NAND device: 64MiB, page size 2048");
    if (m_loaded.contains('r'))
        next("[    0.730000] RAMDISK: " + std::to_string(m_loaded.at('r').size) + " bytes at " +
             hex(m_loaded.at('r').address, 8));
    next("[    1.020000] System halted: this board is simulated. Back at the prompt.");
}

std::optional<Duration> PromptCommands::chatter(const Words& words) {
    const auto length = words.size() == 2 ? parseMilliseconds(words[1]) : std::nullopt;
    if (length && *length <= kLongestChatter)
        return std::chrono::milliseconds(*length);
    sayLine("usage: chatter SECONDS, at most 3600");
    return std::nullopt;
}

void PromptCommands::sayLine(const std::string& line, Duration after) {
    m_chip.say(line + "\r\n", after);
}

} // namespace zrkboard
