#include "board/Fault.h"

#include "board/Text.h"

#include <stdexcept>
#include <string>

namespace zrkboard {

namespace {

constexpr std::uint8_t kWrongByte = '?';
constexpr std::uint8_t kRefusal = 'E';

[[noreturn]] void reject(std::string_view text, const std::string& why) {
    throw std::invalid_argument("\"" + std::string(text) + "\" is not a fault: " + why);
}

// Splits at the first separator; the second half is empty without one.
std::pair<std::string_view, std::optional<std::string_view>> split(std::string_view text, char separator) {
    const auto at = text.find(separator);
    if (at == std::string_view::npos)
        return {text, std::nullopt};
    return {text.substr(0, at), text.substr(at + 1)};
}

std::uint8_t wrongByte(std::string_view whole, std::string_view text) {
    if (text.size() == 1)
        return static_cast<std::uint8_t>(text[0]);
    const auto value = text.starts_with("0x") ? parseNumber(text) : std::nullopt;
    if (!value || *value > 0xFF)
        reject(whole, "the wrong byte is one character or 0x00 to 0xFF");
    return static_cast<std::uint8_t>(*value);
}

std::size_t lastOffset(Step step) {
    switch (step) {
    case Step::Version:
        return 32766;
    case Step::AckHeader:
    case Step::AckData:
    case Step::AckEnd:
    case Step::AckComplete:
        return 9;
    default:
        return 0;
    }
}

} // namespace

Fault parseFault(std::string_view text) {
    const auto [target, what] = split(text, '=');
    if (!what)
        reject(text, "expected STEP=wrong, STEP=none, STEP=late:SECONDS or STEP=refuse");

    Fault fault;
    const auto [name, times] = split(target, '#');
    const auto step = stepNamed(name);
    if (!step)
        reject(text, "the steps are " + allStepNames());
    fault.step = *step;
    if (times) {
        const auto occurrence = parseNumber(*times);
        if (!occurrence || *occurrence == 0 || *occurrence > 1'000'000)
            reject(text, "# takes the number of the occurrence since power-on, from 1");
        fault.occurrence = static_cast<unsigned>(*occurrence);
    }

    const auto [kind, argument] = split(*what, ':');
    const auto [word, position] = split(kind, '@');
    if (word == "wrong") {
        fault.kind = Fault::Kind::Wrong;
        if (position) {
            const auto offset = parseNumber(*position);
            if (!offset || *offset > lastOffset(*step))
                reject(text,
                       "@ takes an offset within the answer, 0 to " + std::to_string(lastOffset(*step)));
            fault.position = static_cast<std::size_t>(*offset);
        }
        if (argument)
            fault.byte = wrongByte(text, *argument);
    } else if (kind == "late") {
        fault.kind = Fault::Kind::Late;
        const auto delay = argument ? parseMilliseconds(*argument) : std::nullopt;
        if (!delay)
            reject(text, "late takes a time in seconds, as in late:2.5");
        fault.delay = std::chrono::milliseconds(*delay);
    } else if (kind == "none" && !argument) {
        fault.kind = Fault::Kind::None;
    } else if (kind == "refuse" && !argument) {
        fault.kind = Fault::Kind::Refuse;
    } else {
        reject(text, "= takes wrong[@OFFSET][:BYTE], none, late:SECONDS or refuse");
    }
    return fault;
}

Answer FaultPlan::apply(Step step, std::vector<std::uint8_t> bytes) {
    Answer answer{std::move(bytes), Duration::zero(), false};
    const unsigned occurrence = ++m_answered[step];
    for (const Fault& fault : m_faults) {
        if (fault.step != step || (fault.occurrence != 0 && fault.occurrence != occurrence))
            continue;
        switch (fault.kind) {
        case Fault::Kind::Wrong:
            if (fault.position < answer.bytes.size())
                answer.bytes[fault.position] = fault.byte.value_or(kWrongByte);
            break;
        case Fault::Kind::None:
            answer.bytes.clear();
            break;
        case Fault::Kind::Late:
            answer.delay += fault.delay;
            break;
        case Fault::Kind::Refuse:
            answer.bytes = {kRefusal};
            answer.refused = true;
            break;
        }
    }
    return answer;
}

} // namespace zrkboard
