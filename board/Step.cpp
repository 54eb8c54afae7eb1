#include "board/Step.h"

#include "board/Text.h"

#include <array>
#include <utility>

namespace zrkboard {

namespace {

constexpr std::array<std::pair<Step, std::string_view>, 12> kStepNames{{
    {Step::BootId, "bootid"},
    {Step::SecondBootId, "second-bootid"},
    {Step::Ready, "R"},
    {Step::Running, "X"},
    {Step::Accept, "accept"},
    {Step::Loaded, "t"},
    {Step::Awake, "F"},
    {Step::Version, "version"},
    {Step::AckHeader, "ack-header"},
    {Step::AckData, "ack-data"},
    {Step::AckEnd, "ack-end"},
    {Step::AckComplete, "ack-complete"},
}};

} // namespace

std::string_view stepName(Step step) {
    for (const auto& [candidate, name] : kStepNames) {
        if (candidate == step)
            return name;
    }
    return "?";
}

std::optional<Step> stepNamed(std::string_view name) {
    for (const auto& [step, candidate] : kStepNames) {
        if (lowerCase(candidate) == lowerCase(name))
            return step;
    }
    return std::nullopt;
}

std::string allStepNames() {
    std::string all;
    for (const auto& [step, name] : kStepNames) {
        all += all.empty() ? "" : ", ";
        all += name;
    }
    return all;
}

} // namespace zrkboard
