#pragma once

#include "board/Step.h"
#include "board/Time.h"

#include <cstdint>
#include <map>
#include <optional>
#include <string_view>
#include <vector>

namespace zrkboard {

// A fault of one answer.
struct Fault {
    enum class Kind {
        Wrong,  // one byte of the answer is another one
        None,   // the answer does not come, the board goes on as if it had
        Late,   // the answer comes later
        Refuse, // "E" instead of the answer, and the board does not go on
    };

    Step step = Step::BootId;
    Kind kind = Kind::None;
    unsigned occurrence = 0;           // 1 = only the first time since power-on, and so on; 0 = every time
    std::size_t position = 0;          // Wrong: offset of the byte within the answer
    std::optional<std::uint8_t> byte;  // Wrong: what is sent there; without it "?"
    Duration delay = Duration::zero(); // Late
};

// Reads STEP[#TIMES]=wrong[@OFFSET][:BYTE] | none | late:SECONDS | refuse, where BYTE is one character or
// 0xHH. Throws std::invalid_argument with a sentence for the user.
[[nodiscard]] Fault parseFault(std::string_view text);

// The bytes that go out for an answer, and when.
struct Answer {
    std::vector<std::uint8_t> bytes;
    Duration delay = Duration::zero();
    bool refused = false;
};

// The faults of a run. It counts how often each step has answered, so one plan belongs to one power-on.
class FaultPlan {
  public:
    explicit FaultPlan(std::vector<Fault> faults = {}) : m_faults(std::move(faults)) {}

    [[nodiscard]] Answer apply(Step step, std::vector<std::uint8_t> bytes);

  private:
    std::vector<Fault> m_faults;
    std::map<Step, unsigned> m_answered;
};

} // namespace zrkboard
