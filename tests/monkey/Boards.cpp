#include "monkey/Boards.h"

#include <algorithm>
#include <string>

namespace zrkmonkey {

std::unique_ptr<zrk::SerialPort> Boards::open(int number, const zrk::LineSettings& settings,
                                              zrk::Handshaking handshaking) {
    m_wasOpenedTwice = m_wasOpenedTwice || std::any_of(m_all.begin(), m_all.end(),
                                                       [](const auto& port) { return port->isOpen(); });
    ++m_timesOpened;
    return now().open(number, settings, handshaking);
}

void Boards::plugIn(const zrkboard::BoardOptions& options, const zrkboard::WireFaults& faults) {
    if (!m_all.empty())
        now().hangUp();
    m_all.push_back(std::make_unique<zrksim::BoardPort>(m_loop, options, faults));
}

void Boards::plugInBadOne(std::uint64_t seed) {
    static constexpr const char* kFaults[]{"bootid=wrong", "second-bootid=none", "R=late:6",
                                           "X=wrong",      "accept=refuse",      "t=none",
                                           "F=late:2",     "version=wrong@1",    "ack-data=none"};
    zrkboard::BoardOptions options;
    zrkboard::WireFaults faults;
    options.misbehaviour.answerDelay = std::chrono::milliseconds(seed / 5 % 2 == 0 ? 0 : seed / 10 % 5500);
    switch (seed % 4) {
    case 0:
        faults = zrkboard::parseWireFaults(std::to_string(seed));
        break;
    case 1:
        options.misbehaviour.faults.push_back(zrkboard::parseFault(kFaults[seed / 4 % std::size(kFaults)]));
        break;
    case 2:
        options.misbehaviour.hangUpAfterReceived = 1 + seed / 4 % 60;
        break;
    default:
        options.misbehaviour.noise = std::string(seed / 4 % 400, static_cast<char>(seed / 7));
        options.misbehaviour.versionLength = static_cast<std::uint32_t>(seed / 4 % 70'000);
        break;
    }
    plugIn(options, faults);
}

} // namespace zrkmonkey
