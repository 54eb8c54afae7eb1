#pragma once

#include "board/Fault.h"
#include "board/Time.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace zrkboard {

// The faults of a board. Byte counts start at 1 and at power-on; "code bytes" are the image bytes that the
// boot ROM, the primary boot and the flash programmer take in, all together, without headers and frame bytes.
struct Misbehaviour {
    std::string noise;                                // sent directly before the first BootID
    std::vector<Fault> faults;                        // in the order given; several may meet one answer
    Duration answerDelay = Duration::zero();          // before every answer but the BootID
    std::optional<std::uint32_t> versionLength;       // what the version frame says; see FlashFrames
    std::optional<std::uint64_t> hangUpAfterCode;     // the line is gone once so many code bytes are in
    std::optional<std::uint64_t> hangUpAfterReceived; // the same, counting every byte received
    std::optional<Duration> hangUpAt;                 // the same, so long after power-on
    std::optional<std::uint64_t> loseCodeByte;        // this code byte never reaches the board
};

struct BoardOptions {
    Duration powerOnDelay = std::chrono::milliseconds(500);   // power-on to the first BootID
    Duration bootIdInterval = std::chrono::milliseconds(500); // BootID to BootID, not 0
    Duration startDelay = std::chrono::milliseconds(100);     // start of a loaded program to its first byte
    Duration eraseTime = std::chrono::seconds(2);             // of the whole NAND
    std::string versionText = "pg_sibl simulated 1.0";
    std::uint32_t lineRate = 11520; // bytes a second, not 0; only the prompt's `chatter` needs to know
    unsigned faultyRuns = 0;        // misbehave in the first so many runs only; 0 = in all
    Misbehaviour misbehaviour;
};

} // namespace zrkboard
