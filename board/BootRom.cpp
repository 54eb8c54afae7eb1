#include "board/BootRom.h"

#include "board/FlashProgrammer.h"
#include "board/Markers.h"
#include "board/PrimaryBoot.h"
#include "board/Text.h"

#include <algorithm>

namespace zrkboard {

BootRom::BootRom(Chip& chip)
    : m_chip(chip), m_nextAnnouncement(chip.now() + chip.options().powerOnDelay), m_image(chip.iram()) {}

State BootRom::state() const {
    return m_phase == Phase::Announcing ? State::Announcing : State::BootRom;
}

std::optional<TimePoint> BootRom::deadline() const {
    if (m_phase != Phase::Announcing)
        return std::nullopt;
    return m_nextAnnouncement;
}

void BootRom::tick() {
    if (!m_announced) {
        m_announced = true;
        m_chip.say(m_chip.misbehaviour().noise);
        m_chip.log("boot ROM: first BootID");
    }
    // There is nothing to refuse here; the announcement goes on as "E".
    (void)m_chip.answer(Step::BootId, '5');
    m_nextAnnouncement += m_chip.options().bootIdInterval;
}

bool BootRom::expectsCode() const {
    return m_phase == Phase::Image && m_image.expectsCode();
}

void BootRom::receive(std::uint8_t byte) {
    switch (m_phase) {
    case Phase::Announcing:
        return receiveAnswer(byte);
    case Phase::FirstUnlock:
        return receiveUnlock(byte, 'U');
    case Phase::SecondUnlock:
        return receiveUnlock(byte, '3');
    case Phase::Image:
        return receiveImage(byte);
    }
}

void BootRom::receiveAnswer(std::uint8_t byte) {
    if (byte != 'A' || !m_announced) {
        m_chip.log("boot ROM: waiting for 'A', ignored " + byteText(byte));
        return;
    }
    m_phase = Phase::FirstUnlock;
    m_chip.log("boot ROM: BootID answered");
    if (!m_chip.answer(Step::SecondBootId, '5'))
        m_chip.fallSilent("boot ROM: refused");
}

void BootRom::receiveUnlock(std::uint8_t byte, std::uint8_t expected) {
    if (byte != expected)
        return m_chip.fallSilent("boot ROM: expected " + byteText(expected) + ", got " + byteText(byte));
    if (m_phase == Phase::FirstUnlock) {
        m_phase = Phase::SecondUnlock;
        return;
    }
    m_phase = Phase::Image;
    m_chip.log("boot ROM: unlocked");
    if (!m_chip.answer(Step::Ready, 'R'))
        m_chip.fallSilent("boot ROM: refused");
}

void BootRom::receiveImage(std::uint8_t byte) {
    if (m_image.receive(byte) == ImageReceiver::Event::HeaderComplete) {
        m_chip.log("boot ROM: image of " + describe(m_image.header()));
        if (!m_image.fits())
            return m_chip.fallSilent("boot ROM: the image does not lie in IRAM (0x0000 to 0xFFFF)");
    }
    if (m_image.complete())
        runImage();
}

void BootRom::runImage() {
    const auto code = m_chip.iram().read(m_image.header().address, m_image.header().size);
    const auto holds = [&code](std::string_view marker) {
        return std::search(code.begin(), code.end(), marker.begin(), marker.end()) != code.end();
    };
    if (holds(kPrimaryBootMarker))
        m_chip.handOver(std::make_unique<PrimaryBoot>(m_chip));
    else if (holds(kFlashProgrammerMarker))
        m_chip.handOver(std::make_unique<FlashProgrammer>(m_chip));
    else
        m_chip.fallSilent("boot ROM: the image has no marker of a program that this board can simulate");
}

} // namespace zrkboard
