#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace zrkboard {

// What may stand at one place of a frame.
struct Allowed {
    std::uint8_t low = 0;
    std::uint8_t high = 0xFF;
};

[[nodiscard]] constexpr Allowed exactly(std::uint8_t byte) {
    return {byte, byte};
}
[[nodiscard]] constexpr Allowed anything() {
    return {};
}

// The bytes of a frame: a head and a tail that are known, and in between any `payload` bytes.
struct FrameLayout {
    std::string name; // for the log
    std::vector<Allowed> head;
    std::uint64_t payload = 0;
    std::vector<Allowed> tail;
};

// Checks a frame byte by byte as it comes in.
class FrameReader {
  public:
    enum class Event { None, Wrong, Complete };

    explicit FrameReader(FrameLayout layout = {}) : m_layout(std::move(layout)) {}

    // After Wrong or Complete no further byte may be given.
    [[nodiscard]] Event receive(std::uint8_t byte);

    // The next byte is one of the payload.
    [[nodiscard]] bool inPayload() const;

    // The frame's bytes as received, without its payload.
    [[nodiscard]] const std::vector<std::uint8_t>& bytes() const { return m_bytes; }

    // Which offset was wrong, what was expected there and what came.
    [[nodiscard]] const std::string& complaint() const { return m_complaint; }
    [[nodiscard]] const std::string& name() const { return m_layout.name; }

  private:
    FrameLayout m_layout;
    std::vector<std::uint8_t> m_bytes;
    std::uint64_t m_offset = 0;
    std::string m_complaint;
};

} // namespace zrkboard
