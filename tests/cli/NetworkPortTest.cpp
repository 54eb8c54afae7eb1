#include "board/launcher/SerialServer.h"
#include "cli/Processes.h"

#include <gtest/gtest.h>

#include <csignal>

namespace {

using zrkboard::MuteListener;
using zrkboard::SerialServer;

class CliNetworkPort : public ::testing::Test {
  protected:
    const SampleImages images;
};

TEST_F(CliNetworkPort, BringsUpAndProgramsABoardBehindAServer) {
    for (const bool raw : {true, false}) {
        BoardProcess board("--verbose --baud 921600 --bootid-interval 5 --erase-time 0.1");
        SerialServer server(board.device());
        const QString device = raw ? server.raw() : server.rfc2217();
        SCOPED_TRACE(device.toStdString());
        // The first step opens the port, the second closes it and opens it again. A server may drop the last
        // byte of a client that ends at once, so the test reads the program's output before.
        CliRun load(images.on(device,
                              "--line-rate 92160 --wait-port 600 --start-timeout 600 --expect-timeout 600 "
                              "load start expect zrk>"));
        ASSERT_EQ(load.status(), 0) << load.error().toStdString() << load.output().toStdString();
        EXPECT_TRUE(board.waitForLog("secondary program: started"));
        CliRun flash(images.on(device, "--line-rate 92160 flash --erase"));
        EXPECT_EQ(flash.status(), 0) << flash.error().toStdString();
    }
}

struct Ending {
    QString device;
    int status;
    const char* error;
};

TEST_F(CliNetworkPort, EndingShowsTheCause) {
    BoardProcess board("--power-on-delay 100");
    auto server = std::make_unique<SerialServer>(board.device());
    CliRun cut(images.on(server->raw(), "load"));
    ASSERT_TRUE(cut.waitFor(QProcess::StandardOutput, "Waiting for BootID")) << cut.error().toStdString();
    const Ending endings[] = {
        {server->raw(), 3, "the port is in use"},
        {"tcp:no-such-host.invalid:3000", 3, "the host no-such-host.invalid is unknown"},
        {"rfc2217:host", 2, "--port rfc2217:host: the port number is missing"},
        {"rack7:3000", 2, "--port rack7:3000: write tcp:rack7:3000 if the port is raw"},
        {"tcp:host:99 --dtr on", 2, "--dtr: tcp:host:99 is a raw port, on which no line can be switched."},
        {"tcp::99", 2, "--port tcp::99: the host is missing"},
        {"tcp:h:70000", 2, "--port tcp:h:70000: the port number goes from 1 to 65535"},
        {"tcp:::1:99", 2, "--port tcp:::1:99: a host, \":\" and a port number are expected"},
    };
    for (const Ending& ending : endings) {
        SCOPED_TRACE(ending.device.toStdString());
        CliRun run(images.on(ending.device, "load"));
        EXPECT_EQ(run.status(), ending.status);
        EXPECT_TRUE(run.error().contains(ending.error)) << run.error().toStdString();
    }
    CliRun dry(images.on(server->raw(), "--dry-run load"));
    EXPECT_EQ(dry.status(), 0);
    EXPECT_TRUE(dry.output().contains("not connected;")) << dry.output().toStdString();
    server->kill();
    EXPECT_EQ(cut.status(), 6);
    EXPECT_TRUE(cut.error().contains("closed the connection")) << cut.error().toStdString();
}

TEST_F(CliNetworkPort, AServerThatDropsItsClientIsConnectedToAgain) {
    BoardProcess board(
        "--verbose --baud 921600 --patience 0 --fault bootid=none --faulty-runs 1 --bootid-interval 5");
    SerialServer server(board.device());
    CliRun run(images.on(server.raw(), "--line-rate 92160 --wait-port 10m load"));
    ASSERT_TRUE(run.waitFor(QProcess::StandardOutput, "Waiting for BootID"));
    server.kill();
    ASSERT_TRUE(run.waitFor(QProcess::StandardError, "Waiting for the port to come back"));
    EXPECT_TRUE(board.waitForLog("closed by the loader"));
    server.start();
    EXPECT_TRUE(board.waitForLog("opened by a loader"));
    board.signal(SIGUSR1);
    EXPECT_EQ(run.status(), 0) << run.error().toStdString();
}

TEST_F(CliNetworkPort, TelnetTakenForARawPortIsReported) {
    const BoardProcess board("--baud 921600 --bootid-interval 5");
    const SerialServer server(board.device());
    CliRun run(images.on(server.rfc2217().replace("rfc2217:", "tcp:"), "--line-rate 92160 --quiet load"));
    EXPECT_NE(run.status(), 0);
    EXPECT_TRUE(run.error().contains(" speaks Telnet: it begins with 0xFF 0xF")) << run.error().toStdString();
    EXPECT_TRUE(run.error().contains("Write " + server.rfc2217().toLatin1())) << run.error().toStdString();
}

TEST_F(CliNetworkPort, InterruptEndsConnecting) {
    const MuteListener mute;
    CliRun run(images.on(QStringLiteral("rfc2217:127.0.0.1:%1").arg(mute.port()), "load"));
    mute.awaitConnection();
    run.send(SIGINT);
    EXPECT_EQ(run.status(), 130);
    EXPECT_FALSE(run.error().contains("Error")) << run.error().toStdString();
    EXPECT_TRUE(run.output().contains("--- Cancel download, closing port ---")) << run.output().toStdString();
}

} // namespace
