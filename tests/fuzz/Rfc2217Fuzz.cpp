#include "fuzz/Fuzz.h"
#include "machine/Rfc2217.h"

// Input: a byte of choice, a counted piece for the line, then what the server sends.

namespace {

using namespace zrkfuzz;
using zrk::Rfc2217;

struct Side {
    Side() { client.begin({115200, 'N', 8, 1}); }

    void feed(const QByteArray& bytes) {
        client.feed({bytes.data(), static_cast<std::size_t>(bytes.size())});
    }

    QByteArray sent;
    QByteArray received;
    Rfc2217 client{
        [this](std::span<const char> bytes) { sent.append(bytes.data(), qsizetype(bytes.size())); },
        [this](std::span<const char> bytes) { received.append(bytes.data(), qsizetype(bytes.size())); }};
};

/// Returns what a server takes for the line's bytes: all but commands.
QByteArray lineBytes(const QByteArray& sent) {
    constexpr char kIac = '\xFF';
    constexpr char kSubnegotiation = '\xFA';
    constexpr char kEnd = '\xF0';
    QByteArray line;
    bool inside = false;
    for (qsizetype i = 0; i < sent.size(); ++i) {
        if (sent[i] != kIac) {
            if (!inside)
                line += sent[i];
            continue;
        }
        require(++i < sent.size(), "no command is cut off");
        if (sent[i] == kIac) {
            if (!inside)
                line += kIac;
        } else if (sent[i] == kSubnegotiation) {
            require(!inside, "no subnegotiation within another");
            inside = true;
        } else if (sent[i] == kEnd) {
            require(inside, "an end has a beginning");
            inside = false;
        } else {
            require(sent[i] >= '\xFB' && sent[i] <= '\xFE', "only options are negotiated");
            ++i;
        }
    }
    require(!inside, "a subnegotiation is ended");
    return line;
}

/// Returns false if a command breaks off a subnegotiation: then the Telnet library's result depends on the
/// pieces, and must only do no harm.
bool isWellFormed(const QByteArray& bytes) {
    bool inside = false;
    for (qsizetype i = 0; i + 1 < bytes.size(); ++i) {
        if (bytes[i] != '\xFF')
            continue;
        const char command = bytes[++i];
        if (inside && command != '\xFF' && command != '\xF0')
            return false;
        i += !inside && command >= '\xFA' && command <= '\xFE' ? 1 : 0; // the option
        inside = command == '\xFA' || (inside && command != '\xF0');
    }
    return true;
}

void act(Side& side, unsigned choice, const QByteArray& forLine) {
    if ((choice & 1U) != 0)
        side.client.setXonXoff((choice & 2U) != 0);
    if ((choice & 4U) != 0)
        side.client.setDtr((choice & 8U) != 0);
    side.client.send({forLine.data(), static_cast<std::size_t>(forLine.size())});
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Input input(data, size);
    const unsigned choice = input.byte();
    const QByteArray forLine = input.counted();
    const QByteArray before = input.counted();
    const QByteArray after = input.rest();
    Side whole;
    Side pieces;
    whole.feed(before);
    for (const QByteArray& piece : piecesOf(before, choice))
        pieces.feed(piece);
    for (Side* side : {&whole, &pieces})
        act(*side, choice, forLine);
    whole.feed(after);
    for (const QByteArray& piece : piecesOf(after, choice))
        pieces.feed(piece);
    if (!isWellFormed(before + after))
        return 0;
    require(whole.received == pieces.received, "pieces bring what the whole does");
    require(whole.sent == pieces.sent, "and are answered the same");
    require(whole.client.state() == pieces.client.state(), "and lead to the same state");
    require(whole.client.isDtrRefused() == pieces.client.isDtrRefused(), "and to the same DTR");
    require((whole.client.state() == Rfc2217::State::Refused) == !whole.client.refused().empty() ||
                whole.client.state() == Rfc2217::State::NotSpoken,
            "a refusal has a name");
    const bool isCompressed = (before + after).contains(QByteArray::fromHex("fffa56"));
    require(isCompressed || lineBytes(whole.sent) == forLine, "the server gets the line's bytes");
    return 0;
}
