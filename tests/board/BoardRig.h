#pragma once

#include "board/Board.h"

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

inline std::string text(const std::vector<std::uint8_t>& bytes) {
    return {bytes.begin(), bytes.end()};
}

// A board with its own clock, and the loader's part of the protocol in bytes.
struct BoardRig {
    using Milliseconds = std::chrono::milliseconds;

    explicit BoardRig(zrkboard::BoardOptions options = {}) : board(std::move(options)) {
        board.setLog([this](zrkboard::TimePoint, const std::string& what) { log += what + "\n"; });
        board.powerOn(now);
    }

    // Sends the bytes, lets the time pass, returns what the board has sent by then.
    std::string send(const std::string& bytes, Milliseconds time = Milliseconds(0)) {
        for (const char byte : bytes)
            board.receive(static_cast<std::uint8_t>(byte), now);
        return wait(time);
    }

    std::string wait(Milliseconds time) {
        board.advance(now += time);
        return text(board.takeOutput());
    }

    [[nodiscard]] bool logged(const std::string& what) const { return log.find(what) != std::string::npos; }

    // Runs from power-on to an image in IRAM; returns the board's answer to the image.
    std::string load(const std::string& image, Milliseconds time = Milliseconds(100)) {
        wait(Milliseconds(500));
        send("AU3");
        return send(header(0, image.size()) + image, time);
    }
    void startPrimary() { load(kPrimary); }

    static std::string word(std::uint64_t value) {
        std::string bytes;
        for (int shift = 0; shift < 32; shift += 8)
            bytes += static_cast<char>(value >> shift & 0xFF);
        return bytes;
    }
    static std::string header(std::uint64_t address, std::uint64_t size) {
        return word(address) + word(size);
    }

    const std::string kPrimary = "....ZRK SIMULATED PRIMARY BOOT....";
    const std::string kPgSibl = "....ZRK SIMULATED PG_SIBL....";

    zrkboard::TimePoint now{};
    std::string log;
    zrkboard::Board board;
};

// A folder that is removed with the object.
struct TemporaryFolder {
    TemporaryFolder() { path = ::mkdtemp(path.string().append("XXXXXX").data()); }
    ~TemporaryFolder() { std::filesystem::remove_all(path); }
    std::filesystem::path path = std::filesystem::temp_directory_path() / "zrk-board-";
};
