#include "cli/Processes.h"

#include <QCoreApplication>
#include <QFile>
#include <QRegularExpression>

#include <gtest/gtest.h>

#include <sys/file.h>

namespace {

/// Lists a pseudo-terminal that this test has open, a device that is missing, and a port on the network.
TEST(Ports, AreListedForPeopleScriptsAndPrograms) {
    const BoardProcess board("--unpaced");
    QFile terminal(board.device());
    ASSERT_TRUE(terminal.open(QIODevice::ReadWrite | QIODevice::Unbuffered));
    const auto listed = [&board](const char* option) {
        CliRun run(option + QString(" --com=6=") + board.device() +
                   " --com=7=/nonexistent --com=8=tcp:rack:2001 ports");
        EXPECT_EQ(run.status(), 0) << run.error().toStdString();
        return run.output().toStdString();
    };
    const std::string device = board.device().toStdString();
    const std::string user = "cli_tests (" + std::to_string(QCoreApplication::applicationPid()) + ")";
    const std::string used = device + "\n  COM6\n  in use by " + user + "\n/nonexistent\n  COM7\n";
    EXPECT_NE(listed("-v").find(used), std::string::npos) << listed("-v");
    const std::string names = listed("-q");
    EXPECT_TRUE(names.ends_with(device + "\ntcp:rack:2001\n")) << names;
    const QString events =
        QString::fromStdString(listed("--json"))
            .remove(QRegularExpression(
                R"x("(time|label|port|adapter|manufacturer|serial|usb|group)":"[\w:.-]*",)x"));
    const QString expected =
        R"({"event":"port","com":[6],"device":"%1","free":false,"name":"%1","permitted":true,"there":true,"user":"%2"}
{"event":"port","com":[7],"device":"/nonexistent","free":null,"name":"/nonexistent","permitted":null,"there":false,"user":""}
{"event":"port","com":[8],"device":"tcp:rack:2001","free":null,"name":"tcp:rack:2001","permitted":null,"there":null,"user":""}
)";
    EXPECT_TRUE(events.contains(expected.arg(board.device(), QString::fromStdString(user))))
        << events.toStdString();

    CliRun run("--port " + board.device() + " expect never --expect-timeout 0.1");
    EXPECT_EQ(run.status(), 7);
    const QByteArray shared =
        "COM1 (" + board.device().toLatin1() + ") is also in use by " + user.c_str() + ", and each";
    EXPECT_TRUE(run.output().contains("--- " + shared)) << run.output().toStdString();
    EXPECT_TRUE(run.error().contains(shared)) << run.error().toStdString();
    ASSERT_EQ(::flock(terminal.handle(), LOCK_EX), 0);
    CliRun refused("--port " + board.device() + " expect never");
    EXPECT_EQ(refused.status(), 3);
    EXPECT_TRUE(refused.error().contains(QByteArray("the device is in use by ") + user.c_str() +
                                         ". Close that program"))
        << refused.error().toStdString();
}

} // namespace
