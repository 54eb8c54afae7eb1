#include "cli/Processes.h"

#include <QCoreApplication>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <gtest/gtest.h>

namespace {

/// A pseudo-terminal that this test has open, a device that is not there, and a port on the network.
TEST(Ports, AreListedForPeopleScriptsAndPrograms) {
    const BoardProcess board({QStringLiteral("--unpaced")});
    QFile terminal(board.device());
    ASSERT_TRUE(terminal.open(QIODevice::ReadWrite | QIODevice::Unbuffered));
    const QByteArray device = board.device().toLocal8Bit();
    const QByteArray user = "cli_tests (" + QByteArray::number(QCoreApplication::applicationPid()) + ")";
    const QStringList line{"--com=6=" + board.device(), "--com=7=/nonexistent", "--com=8=tcp:rack:2001",
                           "ports"};

    CliRun people(line);
    EXPECT_EQ(people.status(), 0) << people.error().toStdString();
    EXPECT_TRUE(
        people.output().contains(device + "\n  COM6\n  in use by " + user + "\n/nonexistent\n  COM7\n"))
        << people.output().toStdString();

    CliRun script(QStringList{"-q"} + line);
    EXPECT_EQ(script.status(), 0);
    EXPECT_TRUE(script.output().contains(device + "\n") && script.output().endsWith("tcp:rack:2001\n"));
    EXPECT_FALSE(script.output().contains("nonexistent")) << script.output().toStdString();

    CliRun program(QStringList{"--json"} + line);
    EXPECT_EQ(program.status(), 0);
    QStringList ports;
    for (const QByteArray& one : program.output().trimmed().split('\n')) {
        const QJsonObject fields = QJsonDocument::fromJson(one).object();
        EXPECT_FALSE(fields.isEmpty()) << one.toStdString();
        const QJsonValue number = fields["com"].toArray().last();
        if (fields["event"] != QLatin1String("port") || number.toInt() < 6)
            continue;
        EXPECT_EQ(fields.size(), 13);
        QStringList values;
        for (const char* name : {"com", "name", "device", "there", "permitted", "free", "user"})
            values += QJsonDocument(QJsonArray{fields[QLatin1String(name)]}).toJson(QJsonDocument::Compact);
        ports += values.join(QLatin1Char(' '));
    }
    EXPECT_EQ(ports.join('\n').toStdString(),
              ("[[6]] [\"" + device + "\"] [\"" + device + "\"] [true] [true] [false] [\"" + user +
               "\"]\n[[7]] [\"/nonexistent\"] [\"/nonexistent\"] [false] [null] [null] [\"\"]\n"
               "[[8]] [\"tcp:rack:2001\"] [\"tcp:rack:2001\"] [null] [null] [null] [\"\"]")
                  .toStdString());
}

} // namespace
