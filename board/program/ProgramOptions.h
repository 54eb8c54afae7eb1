#pragma once

#include "board/Options.h"
#include "board/WireFaults.h"

#include <cstdint>
#include <optional>
#include <string>

namespace zrkboard {

struct ProgramOptions {
    BoardOptions board;
    std::optional<WireFaults> wireFaults;        // of the line itself
    std::uint32_t lineRate = 11520;              // bytes a second in each direction; 0 = as fast as they come
    Duration adapterLatency{0};                  // see AdapterBuffer
    Duration patience = std::chrono::seconds(2); // see PowerUser
    Duration replugDelay = std::chrono::seconds(1); // hang-up to the new device, when there is a further run
    bool off = false;                               // begin without power
    unsigned powerCycles = 0;                       // end after so many runs; 0 = never
    std::optional<std::string> link;
    std::optional<std::string> nandFile;
    std::optional<std::string> sdramDump;
    std::optional<std::string> iramDump;
    std::optional<std::string> replayFile;   // a trace to answer by, instead of the board
    std::optional<std::string> imagesFolder; // write the sample images there and do nothing else
    bool verbose = false;
    bool help = false;
    bool version = false;
};

} // namespace zrkboard
