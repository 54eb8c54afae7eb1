#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <istream>
#include <string>
#include <vector>

namespace zrkboard {

// A line of a loader's trace that a replay needs.
struct TraceLine {
    enum class Kind {
        Opened,    // a loader had the port from now on
        ToBoard,   // bytes that the loader handed over
        FromBoard, // bytes that had come from the board
        Lost,      // the device went away
        Closed
    };
    Kind kind = Kind::Closed;
    std::chrono::microseconds at{}; // since the trace began
    std::vector<std::uint8_t> bytes;
    std::size_t unsent = 0; // Closed: so many of the last bytes to the board may not have left the loader
    std::size_t number = 0; // of the line, from 1
};

// Reads a trace of the form that its first line names:
//
//     # zrk trace 1
//         0.000000 open COM1 ...
//         3.210987 < 35 0D      |5.|      from the board; what follows the bar is for people
//         3.211120 > 41         |A|       to the board
//         9.000001 close unsent 12
//
// Skips comments (#), empty lines, and lines about refused ports, handshaking and DTR. Throws
// std::invalid_argument, "line 7: ...", for anything else, so that a damaged trace is not replayed as if it
// were whole.
[[nodiscard]] std::vector<TraceLine> readTrace(std::istream& text);

} // namespace zrkboard
