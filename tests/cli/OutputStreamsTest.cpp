#include "cli/OutputStreams.h"

#include "cli/FullPipe.h"
#include "cli/Output.h"
#include "machine/StandardStreams.h"

#include <gtest/gtest.h>

namespace {

using zrk::OutputStreams;
using Weight = OutputStreams::Weight;

TEST(OutputStreams, LeaveOutProgressFirstAndNeverAResult) {
    for (const bool json : {false, true}) {
        SCOPED_TRACE(json);
        FullPipe output;
        FullPipe error;
        OutputStreams streams(json, {output.writingEnd(), error.writingEnd(), 1000});
        streams.out(QByteArray(400, 'a'));
        streams.out(QByteArray(101, '1'), Weight::Progress); // more than half
        streams.out(QByteArray(500, 'b'));
        streams.out(QByteArray(101, '2')); // more than all
        streams.out("3");                  // would have room, but not after a gap
        streams.out(QByteArray(300, 'r'), Weight::Result);
        streams.err("message\n");
        EXPECT_EQ(error.readUntil("message\n"), "message\n") << "held up by the other stream's reader";

        const QByteArray kept = QByteArray(400, 'a') + QByteArray(500, 'b') + QByteArray(300, 'r');
        const QByteArray event = ",\"events\":3}\n";
        const QByteArray message =
            "Standard output: 203 bytes are left out, because the reader did not keep up.\n";
        const QByteArray read = output.readUntil(json ? event : kept);
        EXPECT_TRUE(read == kept || (json && read.startsWith(kept + "{\"event\":\"dropped\",\"time\":\"")))
            << read.toStdString();
        if (!json) {
            EXPECT_EQ(error.readUntil(message), "message\n" + message);
        }
        EXPECT_TRUE(streams.isOutputIncomplete());
        streams.out("again\n");
        EXPECT_TRUE(streams.drainOutput({}));
        EXPECT_TRUE(output.readUntil("again\n").endsWith("again\n"));
    }
}

TEST(OutputStreams, OfEventsKeepTheResult) {
    FullPipe output;
    FullPipe error;
    OutputStreams streams(true, {output.writingEnd(), error.writingEnd(), 400});
    zrk::Printer printer({.json = true}, streams);
    zrk::Output board(printer, {});
    streams.out(QByteArray(201, 'a'));
    board.event("progress");
    board.event("wait");
    board.event("console", {{"text", QString(200, 'c')}});
    board.result({.status = 5, .reason = {}, .step = {}}, {});
    const QByteArray read = output.readUntil(",\"events\":3}\n");
    EXPECT_TRUE(read.startsWith(QByteArray(201, 'a') + "{\"event\":\"result\"")) << read.toStdString();
}

TEST(OutputStreams, ThatAreOneFileKeepTheirOrder) {
    FullPipe both;
    OutputStreams streams(false, {both.writingEnd(), both.writingEnd()});
    QByteArray expected;
    for (int i = 0; i < 1000; ++i) {
        const QByteArray line = QByteArray::number(i) + '\n';
        i % 2 == 0 ? streams.out(line) : streams.err(line);
        expected += line;
    }
    EXPECT_EQ(both.readUntil("\n999\n"), expected);
}

TEST(OutputStreams, EndWithoutAReader) {
    zrk::ignoreBrokenPipes();
    FullPipe output;
    FullPipe error;
    OutputStreams streams(false, {output.writingEnd(), error.writingEnd()});
    streams.out("waits");
    streams.giveUp();
    EXPECT_FALSE(streams.drainOutput({}));
    EXPECT_FALSE(streams.hasOutputFailed());
    output.closeReadingEnd();
    EXPECT_TRUE(streams.drainOutput({}));
    EXPECT_TRUE(streams.hasOutputFailed());
    streams.err("message\n");
    EXPECT_EQ(error.readUntil("\n"), "message\n");
}

TEST(OutputStreams, GetAnEndlessLineInPieces) {
    FullPipe output;
    FullPipe error;
    OutputStreams streams(false, {output.writingEnd(), error.writingEnd()});
    zrk::Printer printer({}, streams);
    zrk::Output::Place place;
    place.name = QStringLiteral("a");
    zrk::Output board(printer, place);
    for (int i = 0; i < 66; ++i)
        board.board(QByteArray(1000, 'x'));
    ASSERT_GT(streams.waitingOutput(), 0) << "all is held back";
    EXPECT_EQ(output.readUntil("x\n"), "a: " + QByteArray(66'000, 'x') + '\n');
}

} // namespace
