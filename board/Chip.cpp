#include "board/Chip.h"

#include "board/Silent.h"

namespace zrkboard {

namespace {

constexpr std::uint64_t kIramSize = 64ULL * 1024;
constexpr std::uint64_t kSdramBase = 0x80000000;
constexpr std::uint64_t kSdramSize = 64ULL * 1024 * 1024;

const Misbehaviour kGoodBehaviour;

} // namespace

Chip::Chip(BoardOptions options, Nand nand)
    : m_options(std::move(options)), m_iram(0, kIramSize, 0), m_sdram(kSdramBase, kSdramSize, 0),
      m_nand(std::move(nand)) {}

void Chip::restart(unsigned run) {
    m_misbehaves = m_options.faultyRuns == 0 || run <= m_options.faultyRuns;
    m_faults = FaultPlan(misbehaviour().faults);
    m_outbox.clear();
    m_next.reset();
    m_resetRequested = false;
}

const Misbehaviour& Chip::misbehaviour() const {
    return m_misbehaves ? m_options.misbehaviour : kGoodBehaviour;
}

bool Chip::answer(Step step, std::vector<std::uint8_t> bytes, Duration takes) {
    const std::vector<std::uint8_t> meant = bytes;
    Answer answer = m_faults.apply(step, std::move(bytes));
    if (answer.bytes != meant || answer.delay != Duration::zero())
        log("misbehaving at step " + std::string(stepName(step)));
    if (step != Step::BootId)
        takes += misbehaviour().answerDelay;
    m_outbox.push(std::move(answer.bytes), m_now + takes + answer.delay);
    return !answer.refused;
}

bool Chip::answer(Step step, char byte, Duration takes) {
    return answer(step, std::vector{static_cast<std::uint8_t>(byte)}, takes);
}

void Chip::say(std::string_view text, Duration after) {
    m_outbox.push(std::vector<std::uint8_t>(text.begin(), text.end()), m_now + after);
}

void Chip::log(const std::string& what) const {
    if (m_log)
        m_log(m_now, what);
}

void Chip::fallSilent(const std::string& why) {
    log(why + "; silent until the next power cycle");
    handOver(std::make_unique<Silent>());
}

} // namespace zrkboard
