#include "board/FlashProgrammer.h"

#include "board/Text.h"

namespace zrkboard {

namespace {

// The chip programs page by page while the data comes in, so an interrupted run leaves a part of the image.
constexpr std::size_t kPageSize = 2048;

} // namespace

void FlashProgrammer::start() {
    m_chip.log("flash programmer: started");
}

State FlashProgrammer::state() const {
    return m_phase == Phase::Done ? State::FlashDone : State::Flashing;
}

bool FlashProgrammer::expectsCode() const {
    return m_phase == Phase::Data && m_frame.inPayload();
}

void FlashProgrammer::receive(std::uint8_t byte) {
    switch (m_phase) {
    case Phase::Wake:
        return receiveLetter(byte, 'F');
    case Phase::Start:
        return receiveLetter(byte, 'S');
    case Phase::Done:
        return m_chip.log("flash programmer: finished, ignored " + byteText(byte));
    default:
        return receiveFrame(byte);
    }
}

void FlashProgrammer::receiveLetter(std::uint8_t byte, std::uint8_t expected) {
    if (byte != expected)
        return m_chip.fallSilent("flash programmer: expected " + byteText(expected) + ", got " +
                                 byteText(byte));
    m_chip.log("flash programmer: got " + byteText(byte));
    if (m_phase == Phase::Start)
        return expect(Phase::VersionRequest, versionRequestLayout());
    m_phase = Phase::Start;
    if (!m_chip.answer(Step::Awake, 'F', m_chip.options().startDelay))
        m_chip.fallSilent("flash programmer: refused");
}

void FlashProgrammer::receiveFrame(std::uint8_t byte) {
    if (expectsCode()) {
        m_page.push_back(byte);
        if (m_page.size() == kPageSize)
            programPage();
    }
    switch (m_frame.receive(byte)) {
    case FrameReader::Event::None:
        return;
    case FrameReader::Event::Wrong:
        return m_chip.fallSilent("flash programmer: " + m_frame.complaint());
    case FrameReader::Event::Complete:
        m_chip.log("flash programmer: " + m_frame.name() + " frame");
        return frameComplete();
    }
}

void FlashProgrammer::frameComplete() {
    switch (m_phase) {
    case Phase::VersionRequest:
        expect(Phase::Header, headerLayout());
        return answerFrame(Step::Version, versionInformation(m_chip.options().versionText,
                                                             m_chip.misbehaviour().versionLength));
    case Phase::Header:
        return headerComplete();
    case Phase::Data:
        programPage();
        m_chip.log("flash programmer: " + std::to_string(m_programmed) + " bytes programmed");
        expect(Phase::EndOfData, endOfDataLayout());
        return answerFrame(Step::AckData, acknowledgement());
    case Phase::EndOfData:
        expect(Phase::Complete, completeLayout());
        return answerFrame(Step::AckEnd, acknowledgement());
    default:
        m_phase = Phase::Done;
        return answerFrame(Step::AckComplete, acknowledgement());
    }
}

void FlashProgrammer::headerComplete() {
    m_header = readFlashHeader(m_frame.bytes());
    const std::string range =
        std::to_string(m_header.size) + " bytes to NAND address " + hex(m_header.address, 8);
    m_chip.log("flash programmer: " + range + (m_header.erase ? ", full erase" : ", no erase"));
    if (!m_chip.nand().contains(m_header.address, m_header.size))
        return m_chip.fallSilent(
            "flash programmer: the image does not lie in NAND (0x00000000 to 0x03FFFFFF)");
    if (m_header.erase)
        m_chip.nand().erase();
    expect(Phase::Data, dataLayout(m_header.size));
    answerFrame(Step::AckHeader, acknowledgement(),
                m_header.erase ? m_chip.options().eraseTime : Duration::zero());
}

void FlashProgrammer::programPage() {
    m_chip.nand().program(std::uint64_t{m_header.address} + m_programmed, m_page);
    m_programmed += m_page.size();
    m_page.clear();
}

void FlashProgrammer::expect(Phase phase, FrameLayout layout) {
    m_phase = phase;
    m_frame = FrameReader(std::move(layout));
}

void FlashProgrammer::answerFrame(Step step, std::vector<std::uint8_t> frame, Duration takes) {
    if (!m_chip.answer(step, std::move(frame), takes))
        m_chip.fallSilent("flash programmer: refused");
}

} // namespace zrkboard
