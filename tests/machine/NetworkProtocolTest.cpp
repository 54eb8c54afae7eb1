#include "machine/NetworkAddress.h"
#include "machine/Rfc2217.h"

#include <QByteArray>

#include <gtest/gtest.h>

namespace zrk::test {
namespace {

TEST(NetworkAddress, NamesAreReadAndMalformedOnesRefused) {
    const struct {
        const char* name = "";
        const char* place = ""; ///< after the protocol; "-" for a device, "" for a malformed name
        const char* right = ""; ///< what to write
    } names[] = {
        {"tcp:rack7:3000", "raw rack7:3000"},
        {"TCP:[::1]:65535", "raw [::1]:65535"},
        {"rfc2217:192.168.0.7:1", "rfc2217 192.168.0.7:1"},
        {"/dev/serial/by-id/tcp:x:1", "-"},
        {"COM3:", "-"},
        {"tcp:rack7", ""},
        {"tcp:[::1]", ""},
        {"tcp::1:99", ""},
        {"tcp:[rack7]:99", ""},
        {"tcp:rack7:0", ""},
        {"tcp:rack7:65536", ""},
        {"tcp:rack7:+80", ""},
        {"rfc2217:rack 7:99", ""},
        {"rfc2217:", ""},
        {"tcp:3000", ""},
        {"tcp://rack7:3000", "", "write tcp:rack7:3000, without slashes."},
        {"RFC2217://[::1]:3000/", "", "write rfc2217:[::1]:3000, without slashes."},
        {"rack7.lab:3000", "",
         "write tcp:rack7.lab:3000 if the port is raw, or rfc2217:rack7.lab:3000 if it is Telnet"},
        {"[::1]:3000", "", "write tcp:[::1]:3000 if"},
        {"telnet:rack7:3000", "", "write tcp:rack7:3000 if"},
        {"socket://rack7:3000", "", "write tcp:rack7:3000 if"},
    };
    for (const auto& [name, place, right] : names) {
        SCOPED_TRACE(name);
        const QString text = QString::fromLatin1(name);
        EXPECT_EQ(networkProblem(text).isEmpty(), *place != '\0');
        EXPECT_TRUE(networkProblem(text).contains(QLatin1String(right)))
            << networkProblem(text).toStdString();
        if (!networkProblem(text).isEmpty())
            continue;
        EXPECT_EQ(isOnNetwork(text), *place != '-');
        const auto address = NetworkAddress::parse(text);
        const bool raw = address && address->protocol == NetworkAddress::Protocol::Raw;
        EXPECT_EQ(address ? (raw ? QStringLiteral("raw ") : QStringLiteral("rfc2217 ")) + address->place()
                          : QStringLiteral("-"),
                  QString::fromLatin1(place));
    }
}

class Rfc2217Client : public ::testing::Test {
  protected:
    Rfc2217Client() { client.begin({115200, 'E', 7, 2}); }

    void serverSends(const char* hex) {
        sent.clear();
        const QByteArray bytes = QByteArray::fromHex(hex);
        client.feed({bytes.data(), static_cast<std::size_t>(bytes.size())});
    }
    void agree() {
        serverSends("fffd2c");
        serverSends("fffa2c650001c200fff0 fffa2c6607fff0 fffa2c6703fff0");
        EXPECT_EQ(client.state(), Rfc2217::State::Negotiating);
        serverSends("fffa2c6802fff0");
        EXPECT_EQ(client.state(), Rfc2217::State::Ready);
    }

    QByteArray sent;
    QByteArray received;
    Rfc2217 client{
        [this](std::span<const char> bytes) { sent.append(bytes.data(), qsizetype(bytes.size())); },
        [this](std::span<const char> bytes) { received.append(bytes.data(), qsizetype(bytes.size())); }};
};

TEST_F(Rfc2217Client, AsksForTheLineOnceTheServerAgrees) {
    EXPECT_TRUE(sent.contains(QByteArray::fromHex("fffb2c")));
    serverSends("fffd2c");
    for (const char* command : {"fffa2c010001c200fff0", "fffa2c0207fff0", "fffa2c0303fff0", "fffa2c0402fff0"})
        EXPECT_TRUE(sent.contains(QByteArray::fromHex(command))) << command;
    serverSends("fffd2c");
    EXPECT_EQ(sent, "") << "asked again for what is agreed";
    serverSends("fffb00 fffb01 fffd18 fffc01");
    EXPECT_EQ(sent, QByteArray::fromHex("fffe01fffc18"));
    serverSends("fffb01 fffd18 fffd18");
    EXPECT_EQ(sent, "") << "refused once and for all";
    serverSends("41fffa2c6b00fff0ffff42");
    EXPECT_EQ(received, "A\xFF"
                        "B");
}

TEST_F(Rfc2217Client, DetectsAServerWithoutTheProtocol) {
    serverSends("fffe2c");
    EXPECT_EQ(client.state(), Rfc2217::State::NotSpoken);
}

TEST_F(Rfc2217Client, ReportsWhatTheServerRefuses) {
    serverSends("fffd2c");
    serverSends("fffa2c6500002580fff0");
    EXPECT_EQ(client.state(), Rfc2217::State::Refused);
    EXPECT_EQ(client.refused(), "the baud rate");
}

TEST_F(Rfc2217Client, ReportsAnUnrequestedCompressionInsteadOfLosingBytes) {
    agree();
    serverSends("41 fffa56fff0 424344");
    EXPECT_EQ(received, "A");
    EXPECT_EQ(client.state(), Rfc2217::State::Refused);
    EXPECT_EQ(client.refused(), "to leave the line's bytes uncompressed");
}

TEST_F(Rfc2217Client, TheLastOfSeveralRequestsCounts) {
    agree();
    client.setXonXoff(true);
    client.setXonXoff(false);
    serverSends("fffa2c6902fff0");
    serverSends("fffa2c6901fff0");
    EXPECT_EQ(client.state(), Rfc2217::State::Ready);
    client.setDtr(false);
    client.setDtr(true);
    serverSends("fffa2c6909fff0 fffa2c6908fff0");
    EXPECT_FALSE(client.isDtrRefused());
    client.setDtr(false);
    serverSends("fffa2c6908fff0");
    EXPECT_TRUE(client.isDtrRefused());
    client.setXonXoff(true);
    serverSends("fffa2c6901fff0");
    EXPECT_EQ(client.refused(), "the flow control");
}

TEST_F(Rfc2217Client, HoldsModemLinesFromTheOpeningOn) {
    for (const bool agrees : {true, false}) {
        Rfc2217 holding{
            [this](std::span<const char> bytes) { sent.append(bytes.data(), qsizetype(bytes.size())); },
            [](std::span<const char>) {}};
        const auto hears = [&holding](const char* hex) {
            const QByteArray bytes = QByteArray::fromHex(hex);
            holding.feed({bytes.data(), static_cast<std::size_t>(bytes.size())});
        };
        sent.clear();
        holding.begin({9600, 'N', 8, 1, false, true});
        hears("fffd2c");
        for (const char* command : {"fffa2c0509fff0", "fffa2c050bfff0"})
            EXPECT_TRUE(sent.contains(QByteArray::fromHex(command))) << command;
        hears("fffa2c6500002580fff0 fffa2c6608fff0 fffa2c6701fff0 fffa2c6801fff0 fffa2c6909fff0");
        EXPECT_EQ(holding.state(), Rfc2217::State::Negotiating);
        hears(agrees ? "fffa2c690bfff0" : "fffa2c690cfff0");
        EXPECT_EQ(holding.state(), agrees ? Rfc2217::State::Ready : Rfc2217::State::Refused);
        EXPECT_EQ(holding.refused(), agrees ? "" : "to switch RTS");
    }
}

} // namespace
} // namespace zrk::test
