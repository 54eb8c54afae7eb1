#include "cli/Processes.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>

#include <gtest/gtest.h>

#include <csignal>

namespace {

struct Trace : ::testing::Test {
    [[nodiscard]] QString args(const zrkboard::BoardProcess& board, const QString& rest) const {
        return images.on(QString::fromStdString(board.device()), "--line-rate 0 " + rest);
    }

    const SampleImages images;
    const QString trace = images.file("field.trace");
};

/// Returns the bytes of one direction.
QByteArray bytesOf(const QByteArray& text, char direction) {
    const QRegularExpression row(QString("^ +[\\d.]+ ") + direction + " ([0-9a-f ]+)\\|",
                                 QRegularExpression::MultilineOption);
    QByteArray bytes;
    for (auto rows = row.globalMatch(QString::fromLatin1(text)); rows.hasNext();)
        bytes += QByteArray::fromHex(rows.next().captured(1).toLatin1());
    return bytes;
}

TEST_F(Trace, HasEveryByteAndReplaysTheAnswers) {
    const QString run = "load start expect zrk> --start-timeout 600";
    QByteArray before;
    {
        const BoardProcess board("--unpaced --bootid-interval 5");
        CliRun traced(args(board, "--trace " + trace + " " + run));
        ASSERT_EQ(traced.status(), 0) << traced.error().toStdString();
        before = traced.output();
    }
    const QByteArray text = contents(trace);
    EXPECT_TRUE(text.startsWith("# zrk trace 1\n") && text.contains(" open COM1 /dev/pts/") &&
                text.contains(" 115200,N,8,1 handshaking none\n") && text.contains(" close unsent 0\n"))
        << text.left(300).toStdString();
    QFile primary(images.file("primary.bin"));
    ASSERT_TRUE(primary.open(QIODevice::ReadOnly));
    const QByteArray header = QByteArray::fromHex("00000000 00300000");
    EXPECT_TRUE(bytesOf(text, '>').startsWith("AU3" + header + primary.readAll() + "p"));
    EXPECT_TRUE(bytesOf(text, '<').startsWith("55RXot") && bytesOf(text, '<').endsWith("zrk> "));

    BoardProcess replay("--unpaced --replay " + trace);
    CliRun again(args(replay, "--trace " + trace + " " + run));
    EXPECT_EQ(again.status(), 0) << again.error().toStdString();
    EXPECT_EQ(again.output(), before);
    EXPECT_EQ(replay.join(), 0);
    EXPECT_TRUE(contents(trace).startsWith(text + "\n# zrk trace 1\n")) << "continued";

    QFile image(images.file("secondary.bin"));
    ASSERT_TRUE(image.open(QIODevice::ReadWrite) && image.seek(1000) && image.write("\x01") == 1);
    image.close();
    BoardProcess other("--unpaced --replay " + trace);
    CliRun different(args(other, run));
    EXPECT_EQ(different.status(), 0) << different.error().toStdString();
    EXPECT_TRUE(other.waitForLog("first here: byte 13308 (line "));
    EXPECT_EQ(other.join(), 1);
}

TEST_F(Trace, ThatCannotBeWrittenIsRefused) {
    const BoardProcess board("--unpaced --bootid-interval 5");
    CliRun nowhere(args(board, "--trace /nonexistent/t load"));
    EXPECT_EQ(nowhere.status(), 2);
    EXPECT_TRUE(nowhere.error().contains("--trace: The trace /nonexistent/t cannot be written: No such file"))
        << nowhere.error().toStdString();
    // The transcript has the port's name.
    const QString folder = QFileInfo(images.ini()).path();
    CliRun twice(args(board, "--log " + folder + " --trace " + folder + "/../" + QDir(folder).dirName() +
                                 '/' + QFileInfo(board.device()).fileName() + ".log load"));
    EXPECT_EQ(twice.status(), 2);
    EXPECT_TRUE(twice.error().contains("it is another record of this run.")) << twice.error().toStdString();
}

/// The records may be those of the run that has the port.
TEST_F(Trace, IsNotTouchedByARunWithoutAPort) {
    const BoardProcess board("--unpaced --bootid-interval 0.1");
    CliRun user("--port " + board.device() + " --json expect never");
    ASSERT_TRUE(user.waitFor(QProcess::StandardOutput, "\"board\""));
    QFile file(trace);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly) && file.write("before") == 6);
    file.close();
    const QString log = images.file("log");
    const QString records = "--trace " + trace + " --log " + log + " load";
    const QString several = " --port /nonexistent --port " + board.device() + " --ini " + images.ini() + ' ';
    QFile other(images.file("field-" + QFileInfo(board.device()).fileName() + ".trace"));
    for (const QString& arguments : {args(board, records), several + records}) {
        CliRun run(arguments);
        EXPECT_EQ(run.status(), 3) << run.error().toStdString();
        EXPECT_TRUE(run.error().contains("the device is in use by zrk-loader-cli ("))
            << run.error().toStdString();
        EXPECT_EQ(contents(trace), "before");
        EXPECT_FALSE(QFileInfo::exists(log) || other.exists());
    }
    user.send(SIGINT);
    EXPECT_EQ(user.status(), 130);
}

} // namespace
