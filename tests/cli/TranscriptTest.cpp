#include "cli/Transcript.h"

#include "cli/VisibleText.h"

#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

using zrk::TextOrigin;

/// The lines without their times, which "@" stands for.
QString linesOf(const QString& path) {
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    return QString::fromUtf8(file.readAll())
        .replace(QRegularExpression("^\\d{4}-\\d\\d-\\d\\dT[0-9:.]{12}(Z|[+-]\\d\\d:\\d\\d)",
                                    QRegularExpression::MultilineOption),
                 "@");
}

TEST(Transcript, ShowsWhoSaysWhatAndBeginsWithThePort) {
    const QTemporaryDir folder;
    const QString path = folder.filePath("logs/a.log");
    zrk::Transcript transcript(path);
    transcript.writeMessage("Port: COM1\nand more");
    transcript.write("Sending size .. ", TextOrigin::Loader);
    EXPECT_FALSE(QFileInfo::exists(folder.filePath("logs")));
    transcript.begin({});
    transcript.write("o", TextOrigin::Board);
    transcript.write(" ..OK!\r\n", TextOrigin::Loader);
    transcript.write("* Port: COM2\r\n\x1B[1A", TextOrigin::Board);
    transcript.write(QStringLiteral("\u0085\v* x\nzrk> "), TextOrigin::Board);
    transcript.writeMessage("Cancelled.");
    transcript.write("zrk> ", TextOrigin::Board);
    transcript.write("\r\n--- Closing port ---\r\n", TextOrigin::Loader);
    transcript.write("Sending", TextOrigin::Loader);
    transcript.write("* x", TextOrigin::Board);
    EXPECT_EQ(linesOf(path).toStdString(), "@ * Port: COM1\n@ * and more\n"
                                           "@ * Sending size .. o ..OK!\n"
                                           "@ | * Port: COM2\n@ | ^[[1A\\x85^K* x\n@ | zrk> \n"
                                           "@ * Cancelled.\n"
                                           "@ | zrk> \n@ * --- Closing port ---\n"
                                           "@ * Sending\n@ | * x");
}

TEST(Transcript, EndsWithAWholeLineWhenABoardFloodsIt) {
    const QTemporaryDir folder;
    const QString path = folder.filePath("a.log");
    zrk::Transcript transcript(path, 100);
    transcript.begin({});
    for (int i = 0; i < 100; ++i)
        transcript.write("0123456789\n", TextOrigin::Board);
    EXPECT_EQ(linesOf(path), "@ | 0123456789\n@ | 0123456789\n");
    EXPECT_EQ(transcript.takeFailure(),
              "The transcript " + path +
                  " ends here: it has reached its limit of 100 bytes. The run goes on.");
    EXPECT_EQ(transcript.takeFailure(), "");
}

TEST(JsonLine, HasNoHalfPairs) {
    const QString text =
        QString(QChar(0xD83D)) + "\\ud800\"\n" + QStringLiteral("\U0001F600") + QChar(0xDC00) + "\x7F";
    EXPECT_EQ(zrk::jsonLine({{"text", text}}),
              "{\"text\":\"\\ufffd\\\\ud800\\\"\\n\xF0\x9F\x98\x80\\ufffd\\u007f\"}");
}

} // namespace
