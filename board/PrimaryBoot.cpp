#include "board/PrimaryBoot.h"

#include "board/SecondaryPrompt.h"
#include "board/Text.h"

namespace zrkboard {

void PrimaryBoot::start() {
    m_chip.log("primary boot: started");
    if (!m_chip.answer(Step::Running, 'X', m_chip.options().startDelay))
        m_chip.fallSilent("primary boot: refused");
}

State PrimaryBoot::state() const {
    return m_image ? State::PrimaryLoading : State::PrimaryWaiting;
}

bool PrimaryBoot::expectsCode() const {
    return m_image && m_image->expectsCode();
}

void PrimaryBoot::receive(std::uint8_t byte) {
    if (m_image)
        receiveImage(byte);
    else
        receiveCommand(static_cast<char>(byte));
}

void PrimaryBoot::receiveCommand(char letter) {
    switch (letter) {
    case 'p':
    case 'u':
    case 'r':
    case 'k':
        m_command = letter;
        m_image.emplace(m_chip.sdram());
        break;
    case 'd':
        startSecondary();
        break;
    default:
        m_chip.log("primary boot: no command, ignored " + byteText(static_cast<std::uint8_t>(letter)));
    }
}

void PrimaryBoot::receiveImage(std::uint8_t byte) {
    const std::string who = std::string("primary boot: '") + m_command + "' ";
    if (m_image->receive(byte) == ImageReceiver::Event::HeaderComplete) {
        m_chip.log(who + describe(m_image->header()));
        const bool fits = m_image->fits();
        const bool goesOn = m_chip.answer(Step::Accept, fits ? 'o' : 'E') && fits;
        if (!goesOn) {
            m_chip.log(who + (fits ? "refused" : "refused, not in SDRAM (0x80000000 to 0x83FFFFFF)"));
            m_image.reset();
            return;
        }
    }
    if (!m_image->complete())
        return;
    m_chip.log(who + "complete");
    if (m_chip.answer(Step::Loaded, 't'))
        m_loaded[m_command] = m_image->header();
    m_image.reset();
}

void PrimaryBoot::startSecondary() {
    if (!m_loaded.contains('p')) {
        m_chip.log("primary boot: 'd' without a secondary program, ignored");
        return;
    }
    m_chip.handOver(std::make_unique<SecondaryPrompt>(m_chip, m_loaded));
}

} // namespace zrkboard
