#pragma once

#include "board/Board.h"

#include <chrono>
#include <string>
#include <vector>

// A board on a bench with its own clock, and the loader's half of the conversation written out in bytes.
struct Bench {
    explicit Bench(zrkboard::BoardOptions options = {}) : board(std::move(options)) {
        board.setLog([this](zrkboard::TimePoint, const std::string& what) { log.push_back(what); });
        board.powerOn(now);
    }

    // Sends the bytes, lets the time pass, returns what the board has sent by then.
    std::string send(const std::string& bytes,
                     std::chrono::milliseconds time = std::chrono::milliseconds(0)) {
        for (const char byte : bytes)
            board.receive(static_cast<std::uint8_t>(byte), now);
        return wait(time);
    }

    std::string wait(std::chrono::milliseconds time) {
        now += time;
        board.advance(now);
        const auto bytes = board.takeOutput();
        return {bytes.begin(), bytes.end()};
    }

    [[nodiscard]] bool logged(const std::string& text) const {
        for (const std::string& line : log) {
            if (line.find(text) != std::string::npos)
                return true;
        }
        return false;
    }

    // From power-on to "R".
    void unlock() {
        wait(std::chrono::milliseconds(500));
        send("A");
        send("U3");
    }

    void startPrimary() {
        unlock();
        send(header(0, kPrimary.size()) + kPrimary, std::chrono::milliseconds(100));
    }

    void startPrompt() {
        startPrimary();
        send("p" + header(0x80000004, 8) + "SECOND\x01\xFE");
        send("d", std::chrono::milliseconds(100));
    }

    void startFlashProgrammer() {
        unlock();
        send(header(0, kPgSibl.size()) + kPgSibl);
    }

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
    std::vector<std::string> log;
    zrkboard::Board board;
};

inline std::string text(const std::vector<std::uint8_t>& bytes) {
    return {bytes.begin(), bytes.end()};
}
