#pragma once

#include "board/Chatter.h"
#include "board/Chip.h"
#include "board/PromptCommands.h"

#include <string>

namespace zrkboard {

// The secondary program: a prompt that echoes what is typed and runs a line at its CR, LF or both. Backspace
// and Delete erase one character, Ctrl-C drops the line or stops `chatter`, XOFF and XON stop and restart the
// output.
class SecondaryPrompt : public Partner {
  public:
    SecondaryPrompt(Chip& chip, const LoadedImages& loaded);

    void start() override;
    void receive(std::uint8_t byte) override;
    [[nodiscard]] std::optional<TimePoint> deadline() const override;
    void tick() override;
    [[nodiscard]] State state() const override { return State::Prompt; }

  private:
    void edit(std::uint8_t byte);
    void interrupt();
    void runLine();
    void prompt() { m_chip.say("zrk> "); }

    Chip& m_chip;
    PromptCommands m_commands;
    Chatter m_chatter;
    std::string m_line;
    bool m_afterReturn = false; // an LF that comes now belongs to the CR before it
};

} // namespace zrkboard
