#include "board/FlashFrames.h"

#include <algorithm>
#include <iterator>
#include <string>

namespace zrkboard {

namespace {

constexpr std::uint8_t kStart = 0x02;
constexpr std::uint8_t kEnd = 0x03;
constexpr std::uint32_t kOverhead = 9;
constexpr std::uint32_t kLongestVersion = 32767;

std::uint8_t byteOf(std::uint32_t value, unsigned index) {
    return static_cast<std::uint8_t>(value >> (8 * index));
}

std::uint32_t fieldAt(const std::vector<std::uint8_t>& frame, std::size_t offset) {
    std::uint32_t value = 0;
    for (unsigned i = 0; i < 4; ++i)
        value |= static_cast<std::uint32_t>(frame.at(offset + i)) << (8 * i);
    return value;
}

// Start byte, length and command.
std::vector<Allowed> head(std::uint32_t length, std::uint8_t command) {
    return {exactly(kStart),
            exactly(byteOf(length, 0)),
            exactly(byteOf(length, 1)),
            exactly(byteOf(length, 2)),
            exactly(byteOf(length, 3)),
            exactly(command)};
}

std::vector<Allowed> hostTail() {
    return {exactly(0x00), exactly(0x00), exactly(kEnd)};
}

FrameLayout withPayload(std::string name, std::uint8_t command, const std::vector<Allowed>& payload) {
    const auto length = static_cast<std::uint32_t>(kOverhead + payload.size());
    FrameLayout layout{std::move(name), head(length, command), 0, hostTail()};
    layout.head.insert(layout.head.end(), payload.begin(), payload.end());
    return layout;
}

} // namespace

FrameLayout versionRequestLayout() {
    return withPayload("version request", 0xA6, {exactly(0xA6)});
}

FrameLayout headerLayout() {
    std::vector<Allowed> payload(8, anything()); // address and size
    for (const int fixed : {0x03, 0x00, 0x00, 0x00, 0x01, 0x00})
        payload.push_back(exactly(static_cast<std::uint8_t>(fixed)));
    payload.push_back({0x00, 0x01}); // erase flag
    return withPayload("header", 0xAE, payload);
}

FrameLayout dataLayout(std::uint32_t imageSize) {
    return {"data", head(imageSize + kOverhead, 0xAF), imageSize, hostTail()};
}

FrameLayout endOfDataLayout() {
    return withPayload("end-of-data", 0xA3, {exactly(0xA3), exactly(0x00), exactly(0x00)});
}

FrameLayout completeLayout() {
    return withPayload("complete", 0xB1, {exactly(0xB1)});
}

FlashHeader readFlashHeader(const std::vector<std::uint8_t>& frame) {
    return {fieldAt(frame, 6), fieldAt(frame, 10), frame.at(20) == 0x01};
}

std::vector<std::uint8_t> acknowledgement() {
    return {kStart, 0x0A, 0x00, 0x00, 0x00, 0x06, 0x06, 0x17, 0x00, kEnd};
}

std::vector<std::uint8_t> versionInformation(std::string_view text, std::optional<std::uint32_t> claimed) {
    std::string sent(text);
    if (claimed && *claimed >= kOverhead && *claimed <= kLongestVersion)
        sent.resize(*claimed - kOverhead, '.');
    const std::uint32_t length = claimed.value_or(static_cast<std::uint32_t>(sent.size() + kOverhead));

    std::vector<std::uint8_t> frame{
        kStart, byteOf(length, 0), byteOf(length, 1), byteOf(length, 2), byteOf(length, 3), 0xA6};
    std::copy(sent.begin(), sent.end(), std::back_inserter(frame));
    frame.insert(frame.end(), {0x17, 0x00, kEnd});
    return frame;
}

} // namespace zrkboard
