#pragma once

#include "board/Chip.h"
#include "board/PrimaryBoot.h"

#include <map>
#include <optional>
#include <string>
#include <vector>

namespace zrkboard {

// The commands of the secondary program's prompt. Output lines end in CR LF.
class PromptCommands {
  public:
    PromptCommands(Chip& chip, const LoadedImages& loaded);

    // Runs one line and sends its output. Returns how long `chatter` is to go on, empty for all others.
    std::optional<Duration> run(const std::string& line);

  private:
    using Words = std::vector<std::string>;

    void help();
    void memoryDump(const Words& words);
    void checksum(const Words& words);
    void setVariable(const Words& words);
    void printVariables(const Words& words);
    void boot();
    std::optional<Duration> chatter(const Words& words);
    void sayLine(const std::string& line, Duration after = Duration::zero());

    Chip& m_chip;
    LoadedImages m_loaded;
    std::map<std::string, std::string> m_variables;
};

} // namespace zrkboard
