#include "machine/Rfc2217.h"

#include <algorithm>
#include <array>
#include <libtelnet.h>

namespace zrk {
namespace {

// IAC SB 44 <command> <value> IAC SE; the server's answer has the command + 100 and the value in force.
//   command              bytes  values
//   1  baud rate           4    bits a second, high byte first
//   2  data size           1    5 to 8
//   3  parity              1    1 none, 2 odd, 3 even
//   4  stop size           1    1, 2
//   5  control             1    1 no flow control, 2 XON/XOFF; 8 DTR on, 9 DTR off; 11 RTS on, 12 RTS off;
//                               14, 15 as 1, 2 inbound
//   10 line state mask     1    what is reported unasked: 0 nothing
//   11 modem state mask    1    the same
//   12 purge               1    1 what was received
constexpr std::uint8_t kOption = 44;
constexpr std::uint8_t kBaudRate = 1;
constexpr std::uint8_t kDataSize = 2;
constexpr std::uint8_t kParity = 3;
constexpr std::uint8_t kStopSize = 4;
constexpr std::uint8_t kControl = 5;
constexpr std::uint8_t kLineStateMask = 10;
constexpr std::uint8_t kModemStateMask = 11;
constexpr std::uint8_t kPurge = 12;
constexpr std::uint8_t kAnswer = 100;

constexpr std::uint32_t kNoFlow = 1;
constexpr std::uint32_t kXonXoff = 2;
constexpr std::uint32_t kHardwareFlow = 3;
constexpr std::uint32_t kDtrOn = 8;
constexpr std::uint32_t kDtrOff = 9;
constexpr std::uint32_t kRtsOn = 11;
constexpr std::uint32_t kRtsOff = 12;
constexpr std::uint32_t kPurgeReceived = 1;

constexpr std::uint8_t kBinary = 0;
constexpr std::uint8_t kSuppressGoAhead = 3;

// With a table of options the library would negotiate by itself, but would also hide a refused offer.
constexpr std::array<telnet_telopt_t, 1> kNoTable{{{-1, 0, 0}}};

bool isOffered(std::uint8_t option) {
    return option == kOption || option == kBinary || option == kSuppressGoAhead;
}

} // namespace

Rfc2217::Rfc2217(Bytes toServer, Bytes received)
    : m_toServer(std::move(toServer)), m_received(std::move(received)), m_telnet(nullptr, telnet_free) {
    const auto onEvent = [](telnet_t*, telnet_event_t* event, void* self) {
        static_cast<Rfc2217*>(self)->handle(*event);
    };
    m_telnet.reset(telnet_init(kNoTable.data(), onEvent, TELNET_FLAG_PROXY, this));
}

Rfc2217::~Rfc2217() = default;

void Rfc2217::begin(const LineSettings& settings) {
    m_settings = settings;
    telnet_negotiate(m_telnet.get(), TELNET_WILL, kOption);
    for (const std::uint8_t option : {kBinary, kSuppressGoAhead}) {
        telnet_negotiate(m_telnet.get(), TELNET_WILL, option);
        telnet_negotiate(m_telnet.get(), TELNET_DO, option);
    }
}

void Rfc2217::feed(std::span<const char> bytes) {
    telnet_recv(m_telnet.get(), bytes.data(), bytes.size());
}

void Rfc2217::send(std::span<const char> bytes) {
    telnet_send(m_telnet.get(), bytes.data(), bytes.size());
}

void Rfc2217::setXonXoff(bool on) {
    ask(kControl, m_flow, on ? kXonXoff : kNoFlow);
}

void Rfc2217::setDtr(bool on) {
    ask(kControl, m_dtr, on ? kDtrOn : kDtrOff);
}

void Rfc2217::handle(const telnet_event_t& event) {
    if (m_isCompressed)
        return;
    switch (event.type) {
    case TELNET_EV_SEND:
        return m_toServer({event.data.buffer, event.data.size});
    case TELNET_EV_DATA:
        return m_received({event.data.buffer, event.data.size});
    case TELNET_EV_WILL:
        if (event.neg.telopt != kBinary && event.neg.telopt != kSuppressGoAhead)
            refuse(event.neg.telopt, true);
        return;
    case TELNET_EV_DO:
        if (!isOffered(event.neg.telopt))
            refuse(event.neg.telopt, false);
        else if (event.neg.telopt == kOption && !m_hasAsked)
            askForAll();
        return;
    case TELNET_EV_DONT:
        if (event.neg.telopt == kOption)
            m_state = State::NotSpoken;
        return;
    case TELNET_EV_SUBNEGOTIATION:
        if (event.sub.telopt == kOption)
            takeAnswer({event.sub.buffer, event.sub.size});
        if (event.sub.telopt == TELNET_TELOPT_COMPRESS2)
            noteCompression();
        return;
    default:
        return;
    }
}

/// Refuses an option once. An option that stays off needs no second answer, and a server that asks again and
/// again must not make the loader answer each time.
void Rfc2217::refuse(std::uint8_t option, bool theirs) {
    const std::size_t place = option + (theirs ? 0U : 256U);
    if (m_refusedOptions.test(place))
        return;
    m_refusedOptions.set(place);
    telnet_negotiate(m_telnet.get(), theirs ? TELNET_DONT : TELNET_WONT, option);
}

/// Notes the compression, which the library accepts, agreed or not: what follows would be inflated, or lost
/// silently, or, in a library without zlib, taken for the line's bytes.
void Rfc2217::noteCompression() {
    m_isCompressed = true;
    m_refused = "to leave the line's bytes uncompressed";
    m_state = State::Refused;
}

void Rfc2217::askForAll() {
    m_hasAsked = true;
    command(kLineStateMask, 0);
    command(kModemStateMask, 0);
    command(kPurge, kPurgeReceived);
    if (m_settings.dtr)
        setDtr(*m_settings.dtr);
    if (m_settings.rts)
        ask(kControl, m_rts, *m_settings.rts ? kRtsOn : kRtsOff);
    ask(kBaudRate, m_line[0], static_cast<std::uint32_t>(m_settings.baudRate));
    ask(kDataSize, m_line[1], static_cast<std::uint32_t>(m_settings.dataBits));
    ask(kParity, m_line[2], m_settings.parity == 'O' ? 2 : m_settings.parity == 'E' ? 3 : 1);
    ask(kStopSize, m_line[3], static_cast<std::uint32_t>(m_settings.stopBits));
}

void Rfc2217::ask(std::uint8_t commandCode, Asked& asked, std::uint32_t value) {
    asked.value = value;
    ++asked.unanswered;
    command(commandCode, value);
}

void Rfc2217::command(std::uint8_t code, std::uint32_t value) {
    std::string text{static_cast<char>(code)};
    const int bytes = code == kBaudRate ? 4 : 1;
    for (int i = bytes - 1; i >= 0; --i)
        text += static_cast<char>(value >> (8 * i));
    telnet_subnegotiation(m_telnet.get(), kOption, text.data(), text.size());
}

void Rfc2217::takeAnswer(std::span<const char> answer) {
    if (answer.size() < 2)
        return;
    std::uint32_t value = 0;
    for (const char byte : answer.subspan(1))
        value = value << 8 | static_cast<std::uint8_t>(byte);
    const int code = static_cast<std::uint8_t>(answer.front()) - kAnswer;
    static constexpr std::array kNames{"the baud rate", "the data bits", "the parity", "the stop bits"};
    if (code >= kBaudRate && code <= kStopSize) {
        const auto index = static_cast<std::size_t>(code - kBaudRate);
        settle(m_line[index], kNames[index], value);
    } else if (code == kControl && value >= kNoFlow && value <= kHardwareFlow) {
        settle(m_flow, "the flow control", value);
    } else if (code == kControl && (value == kDtrOn || value == kDtrOff)) {
        settleLine(m_dtr, "to switch DTR", value, m_settings.dtr.has_value());
    } else if (code == kControl && (value == kRtsOn || value == kRtsOff)) {
        settleLine(m_rts, "to switch RTS", value, m_settings.rts.has_value());
    }
    finishNegotiation();
}

/// Without a line that the settings hold the port cannot be opened; otherwise only who switches it is told.
void Rfc2217::settleLine(Asked& asked, const char* name, std::uint32_t value, bool isHeld) {
    asked.refused = --asked.unanswered <= 0 && asked.value && *asked.value != value;
    if (!asked.refused || !isHeld || m_state != State::Negotiating)
        return;
    m_refused = name;
    m_state = State::Refused;
}

void Rfc2217::settle(Asked& asked, const char* name, std::uint32_t value) {
    if (!asked.value || --asked.unanswered > 0)
        return;
    asked.unanswered = 0;
    if (*asked.value != value) {
        m_refused = name;
        m_state = State::Refused;
    }
}

void Rfc2217::finishNegotiation() {
    const bool settled = std::all_of(m_line.begin(), m_line.end(),
                                     [](const Asked& each) { return each.value && each.unanswered == 0; });
    if (settled && m_dtr.unanswered <= 0 && m_rts.unanswered <= 0 && m_state == State::Negotiating)
        m_state = State::Ready;
}

} // namespace zrk
