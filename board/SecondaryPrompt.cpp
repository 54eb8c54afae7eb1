#include "board/SecondaryPrompt.h"

#include "board/Text.h"

#include <utility>

namespace zrkboard {

namespace {

constexpr std::size_t kLongestLine = 255;

enum Key : std::uint8_t {
    kCtrlC = 0x03,
    kBell = 0x07,
    kBackspace = 0x08,
    kLineFeed = 0x0A,
    kReturn = 0x0D,
    kXon = 0x11,
    kXoff = 0x13,
    kDelete = 0x7F
};

constexpr std::string_view kBanner = "\r\n\r\nZRK secondary program (simulated board) 1.0\r\n"
                                     "Type help for a list of commands.\r\n\r\nzrk> ";

} // namespace

SecondaryPrompt::SecondaryPrompt(Chip& chip, const LoadedImages& loaded)
    : m_chip(chip), m_commands(chip, loaded), m_chatter(chip) {}

void SecondaryPrompt::start() {
    m_chip.log("secondary program: started");
    m_chip.say(kBanner, m_chip.options().startDelay);
}

std::optional<TimePoint> SecondaryPrompt::deadline() const {
    return m_chatter.deadline();
}

void SecondaryPrompt::tick() {
    m_chatter.tick();
    if (!m_chatter.running())
        prompt();
}

void SecondaryPrompt::receive(std::uint8_t byte) {
    if (std::exchange(m_afterReturn, byte == kReturn) && byte == kLineFeed)
        return;
    switch (byte) {
    case kXoff:
    case kXon:
        m_chip.outbox().hold(byte == kXoff);
        break;
    case kCtrlC:
        interrupt();
        break;
    default:
        if (!m_chatter.running()) // it reads nothing while it talks
            edit(byte);
    }
}

void SecondaryPrompt::edit(std::uint8_t byte) {
    switch (byte) {
    case kReturn:
    case kLineFeed:
        runLine();
        break;
    case kBackspace:
    case kDelete:
        if (!m_line.empty()) {
            m_line.pop_back();
            m_chip.say("\b \b");
        }
        break;
    default:
        if (byte < 0x20)
            break;
        if (m_line.size() == kLongestLine) {
            m_chip.say(std::string(1, kBell));
            break;
        }
        m_line += static_cast<char>(byte);
        m_chip.say(std::string(1, static_cast<char>(byte)));
    }
}

void SecondaryPrompt::interrupt() {
    m_chatter.stop();
    m_line.clear();
    m_chip.say("^C\r\n");
    prompt();
}

void SecondaryPrompt::runLine() {
    m_chip.say("\r\n");
    const std::string line = std::exchange(m_line, {});
    m_chip.log("secondary program: " + quoted(line));
    const auto chatter = m_commands.run(line);
    if (chatter)
        m_chatter.start(*chatter);
    else if (!m_chip.resetRequested())
        prompt();
}

} // namespace zrkboard
