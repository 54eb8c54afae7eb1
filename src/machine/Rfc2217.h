#pragma once

#include "platform/SerialPort.h"

#include <array>
#include <bitset>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>

struct telnet_t;
union telnet_event_t;

namespace zrk {

/// The client's side of RFC 2217: a Telnet connection whose server sets up its serial line on request. It
/// keeps the protocol's state and does no input or output of its own.
class Rfc2217 {
  public:
    enum class State {
        Negotiating,
        Ready,     ///< the server has the line settings
        NotSpoken, ///< the server does not support serial settings
        Refused,   ///< it refused the setting that refused() names
    };

    /// `toServer` gets what is to be sent, `received` the line's bytes; both only within the calls below.
    using Bytes = std::function<void(std::span<const char>)>;
    Rfc2217(Bytes toServer, Bytes received);
    ~Rfc2217();
    Rfc2217(const Rfc2217&) = delete;
    Rfc2217& operator=(const Rfc2217&) = delete;

    /// Offers the protocol, and asks for the settings once the server agrees.
    void begin(const LineSettings& settings);

    /// Takes what the server has sent.
    void feed(std::span<const char> bytes);

    /// Sends bytes of the line.
    void send(std::span<const char> bytes);

    void setXonXoff(bool on);
    void setDtr(bool on);

    [[nodiscard]] State state() const { return m_state; }
    [[nodiscard]] bool isDtrRefused() const { return m_dtr.refused; }

    /// Returns "the baud rate", "the flow control", for example.
    [[nodiscard]] const std::string& refused() const { return m_refused; }

  private:
    /// A setting that was requested; the server answers each of several requests, and the last one counts.
    struct Asked {
        std::optional<std::uint32_t> value{};
        int unanswered = 0;
        bool refused = false;
    };

    void handle(const telnet_event_t& event);
    void refuse(std::uint8_t option, bool theirs);
    void noteCompression();
    void askForAll();
    void ask(std::uint8_t command, Asked& asked, std::uint32_t value);
    void command(std::uint8_t command, std::uint32_t value);
    void takeAnswer(std::span<const char> answer);
    void settle(Asked& asked, const char* name, std::uint32_t value);
    void settleLine(Asked& asked, const char* name, std::uint32_t value, bool isHeld);
    void finishNegotiation();

    Bytes m_toServer;
    Bytes m_received;
    LineSettings m_settings;
    State m_state = State::Negotiating;
    std::string m_refused;
    bool m_hasAsked = false;
    bool m_isCompressed = false;       ///< by a server, unrequested
    std::array<Asked, 4> m_line{};     ///< baud rate, data bits, parity, stop bits
    std::bitset<512> m_refusedOptions; ///< the server's own, then those it asked of the loader
    Asked m_flow;
    Asked m_dtr;
    Asked m_rts;
    std::unique_ptr<telnet_t, void (*)(telnet_t*)> m_telnet;
};

} // namespace zrk
