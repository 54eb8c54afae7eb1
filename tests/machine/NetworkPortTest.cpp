#include "PortFixture.h"
#include "board/launcher/SerialServer.h"

#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>
#include <thread>

namespace zrk::test {
namespace {

using namespace std::chrono_literals;
using zrkboard::MuteListener;
using zrkboard::SerialServer;

class NetworkPort : public PortFixture {
  protected:
    void open(const QString& device) {
        port = MachinePorts(loop, PortNames({{1, device}})).open(1, kLine, Handshaking::None);
    }

    /// Returns the failure of opening it, without its beginning.
    std::string opening(const QString& device) {
        const std::string text = failureOf([&] { open(device); });
        port.reset();
        const std::string begin = "not opened: Cannot open COM1 (" + device.toStdString() + "): ";
        return text.rfind(begin, 0) == 0 ? text.substr(begin.size()) : text;
    }

    std::string failureOnceLost() {
        EXPECT_TRUE(waitUntil([this] { return port->isLost(); }));
        return failureOf([this] { (void)port->transmitRoom(); });
    }

    /// Returns this process's sockets that are connected.
    static std::vector<int> connections() {
        std::vector<int> found;
        for (int fd = 0; fd < 256; ++fd) {
            sockaddr_in peer{};
            socklen_t size = sizeof peer;
            if (::getpeername(fd, reinterpret_cast<sockaddr*>(&peer), &size) == 0 &&
                peer.sin_family == AF_INET)
                found.push_back(fd);
        }
        return found;
    }

    SerialServer server{line.device()};
};

TEST_F(NetworkPort, EveryByteGoesThroughAsItIs) {
    for (const QString& device : {server.raw(), server.rfc2217()}) {
        SCOPED_TRACE(device.toStdString());
        open(device);
        const QByteArray bytes = pattern(1024);
        port->write(bytes);
        EXPECT_EQ(line.receive(bytes.size()), bytes);
        line.send(bytes);
        EXPECT_EQ(readAll(*port, bytes.size()), bytes);
        EXPECT_TRUE(drains(10min));
        port.reset();
        open(device); // though the server lets go of the device a little later than the port is closed
        port.reset();
    }
}

TEST_F(NetworkPort, Rfc2217SetsUpTheLineAndTheFlowControl) {
    open(server.rfc2217());
    const termios settings = line.settings();
    EXPECT_EQ(settings.c_cflag & (CSTOPB | PARENB | CSIZE), tcflag_t{CS8});
    EXPECT_EQ(::cfgetospeed(&settings), static_cast<speed_t>(B115200));
    const auto flow = [this] { return (line.settings().c_iflag & IXON) != 0; };
    port->setHandshaking(Handshaking::XonXoff);
    const auto look = loop.wakeEvery(10ms);
    EXPECT_TRUE(waitUntil(flow));
    port->setHandshaking(Handshaking::None);
    EXPECT_TRUE(waitUntil([&] { return !flow(); }));
    EXPECT_FALSE(port->isLost());
}

TEST_F(NetworkPort, FailureToOpenSaysWhereAndWhatToDo) {
    open(server.raw());
    const auto other = std::move(port);
    const QString raw = server.raw().mid(4);
    EXPECT_EQ(opening(server.raw()),
              "at the serial server " + raw.toStdString() +
                  " the port is in use (\"Port already in use\"). Close the other connection and try again.");
    const std::string inUse = opening(server.rfc2217());
    EXPECT_NE(inUse.find("the port is in use (\"Port's device already in use\")"), std::string::npos)
        << inUse;
    int free = 0;
    {
        const MuteListener gone;
        free = gone.port();
    }
    EXPECT_EQ(opening(QStringLiteral("tcp:localhost:%1").arg(free)),
              "nothing listens at localhost:" + std::to_string(free) +
                  ". Start the serial server, or correct the port number.");
    EXPECT_NE(
        opening(QStringLiteral("tcp:no-such-host.invalid:3000")).find("the host no-such-host.invalid is"),
        std::string::npos);
    EXPECT_EQ(opening(QStringLiteral("tcp:host")),
              "not opened: Cannot open COM1: tcp:host: the port number is missing, as in tcp:rack7:3000, "
              "tcp:[::1]:3000 or rfc2217:rack7:3001.");
    // A raw port gets no offer of serial settings, whatever the board sends, and must not decide how much
    // memory its bytes take.
    constexpr std::size_t kMuch = std::size_t{64} << 20;
    const MuteListener rawPort;
    std::size_t taken = 0;
    std::jthread flood([&] { taken = rawPort.floodOne(kMuch); });
    const auto begin = loop.now();
    EXPECT_EQ(opening(QStringLiteral("rfc2217:127.0.0.1:%1").arg(rawPort.port())).rfind("127.0.0.1:", 0), 0U);
    EXPECT_GE(loop.now() - begin, 5s);
    flood.join();
    EXPECT_LT(taken, kMuch / 2) << "more than the system's own buffers";
    EXPECT_FALSE(other->isLost());
}

TEST_F(NetworkPort, ARefusalIsReadThoughTheAnswersToItDoNotArrive) {
    const struct {
        std::string said;
        const char* told;
    } refusals[] = {
        // More than one read takes, so that answers to its beginning meet the end of the connection.
        {"\xFF\xFB\x2C\xFF\xFD\x2C" + std::string(5000, '.') + "in use", "the port is in use"},
        {"\xFF\xFE\x2C", " speaks Telnet, but not RFC 2217. Switch RFC 2217 on at the server, or make"},
    };
    for (const auto& refusal : refusals) {
        const MuteListener busy;
        const std::jthread refusing([&](const std::stop_token& stop) {
            while (!stop.stop_requested())
                busy.refuseOne(refusal.said);
        });
        const std::string failure = opening(QStringLiteral("rfc2217:127.0.0.1:%1").arg(busy.port()));
        EXPECT_NE(failure.find(refusal.told), std::string::npos) << failure;
    }
}

TEST_F(NetworkPort, ConnectingHasALimitAndCanBeCancelled) {
    const MuteListener full;
    const QString device = QStringLiteral("tcp:127.0.0.1:%1").arg(full.port());
    open(device); // fills the queue of those that wait to be accepted
    const auto first = std::move(port);
    const std::string failure = opening(device);
    EXPECT_NE(failure.find("has not answered within 5 s. Check that the serial server is on"),
              std::string::npos)
        << failure;

    MachinePorts ports(loop, PortNames({{1, device}}));
    loop.post([&] { ports.giveUp(); });
    try {
        (void)ports.open(1, kLine, Handshaking::None);
        ADD_FAILURE() << "opened";
    } catch (const RuntimeFailure& givenUp) {
        EXPECT_EQ(givenUp.kind(), FailureKind::Cancelled);
    }
}

/// The cancelled opening is up the stack and cannot return yet, but must not keep the server's port.
TEST_F(NetworkPort, ACancelledOpeningDropsItsConnectionForTheNextOne) {
    const MuteListener mute;
    MachinePorts ports(
        loop, PortNames({{1, QStringLiteral("rfc2217:127.0.0.1:%1").arg(mute.port())}, {2, server.raw()}}));
    bool isTaken = false;
    const auto take = loop.createTimer([&] {
        if (isTaken || connections().empty())
            return;
        isTaken = true;
        ports.giveUp();
        EXPECT_EQ(connections().size(), 0U);
        port = ports.open(2, kLine, Handshaking::None);
    });
    take->start(1ms);
    EXPECT_THROW((void)ports.open(1, kLine, Handshaking::None), RuntimeFailure);
    EXPECT_TRUE(port && !port->isLost());
    EXPECT_EQ(connections().size(), 1U);
}

TEST_F(NetworkPort, ClosedByTheOtherSideIsALostPort) {
    for (const bool raw : {true, false}) {
        SerialServer mortal(line.device());
        const QString device = raw ? mortal.raw() : mortal.rfc2217();
        open(device);
        line.send("last words");
        ASSERT_TRUE(waitUntil([this] { return port->bytesWaiting() == 10; }));
        mortal.kill();
        EXPECT_EQ(failureOnceLost(),
                  "lost: COM1 (" + device.toStdString() + ") is gone: the serial server at " +
                      device.mid(device.indexOf(':') + 1).toStdString() +
                      " closed the connection. Check the server and its adapter, and start "
                      "over.");
        EXPECT_EQ(port->read(100), "last words");
    }
}

// Only an administrator could remove a peer from the network.
TEST_F(NetworkPort, SystemWatchesForADeadPeer) {
    open(server.raw());
    const auto value = [](int socket, int level, int option) {
        int found = -1;
        socklen_t size = sizeof found;
        return ::getsockopt(socket, level, option, &found, &size) == 0 ? found : -1;
    };
    const std::vector<int> watched = connections();
    ASSERT_EQ(watched.size(), 1U);
    const int fd = watched[0];
    EXPECT_EQ(value(fd, SOL_SOCKET, SO_KEEPALIVE), 1);
    EXPECT_LE(value(fd, IPPROTO_TCP, TCP_KEEPIDLE) +
                  value(fd, IPPROTO_TCP, TCP_KEEPINTVL) * value(fd, IPPROTO_TCP, TCP_KEEPCNT),
              10);
    EXPECT_EQ(value(fd, IPPROTO_TCP, TCP_USER_TIMEOUT), 7000);
    EXPECT_EQ(value(fd, IPPROTO_TCP, TCP_NODELAY), 1);
}

} // namespace
} // namespace zrk::test
