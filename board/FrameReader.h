#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace zrkboard {

// The values that one byte of a frame may have.
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

// The bytes of a frame: a fixed head and tail with any `payload` bytes in between.
struct FrameLayout {
    std::string name; // for the log
    std::vector<Allowed> head;
    std::uint64_t payload = 0;
    std::vector<Allowed> tail;
};

// A frame that is checked byte by byte as it comes in.
class FrameReader {
  public:
    enum class Event { None, Wrong, Complete };

    explicit FrameReader(FrameLayout layout = {}) : m_layout(std::move(layout)) {}

    // Takes a byte; not to be called after Wrong or Complete.
    [[nodiscard]] Event receive(std::uint8_t byte);

    // Returns whether the next byte belongs to the payload.
    [[nodiscard]] bool inPayload() const;

    // Returns the frame's bytes as received, without its payload.
    [[nodiscard]] const std::vector<std::uint8_t>& bytes() const { return m_bytes; }

    // Returns which offset was wrong, what was expected there and what came.
    [[nodiscard]] const std::string& complaint() const { return m_complaint; }
    [[nodiscard]] const std::string& name() const { return m_layout.name; }

  private:
    FrameLayout m_layout;
    std::vector<std::uint8_t> m_bytes;
    std::uint64_t m_offset = 0;
    std::string m_complaint;
};

} // namespace zrkboard
