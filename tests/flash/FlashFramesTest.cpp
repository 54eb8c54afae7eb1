#include "FlashRig.h"

namespace {

using namespace zrktest;
using zrk::Outcome;

QByteArray leastFirst(std::uint32_t value) {
    QByteArray bytes;
    for (unsigned i = 0; i < 4; ++i)
        bytes += static_cast<char>(value >> (8 * i));
    return bytes;
}

TEST(FlashFrames, AnAckWrongAtAnyByteEndsTheRunWithTheRestUnread) {
    for (std::size_t step = 5; step <= 8; ++step) {
        for (qsizetype position = 0; position < 10; ++position) {
            SCOPED_TRACE(testing::Message() << "step " << step << " position " << position);
            FlashRig b;
            disturb(b, b.port.steps[step], Trouble::Wrong, position);
            b.start();
            EXPECT_EQ(b.bench.console(), FlashRig::textsUpTo(static_cast<qsizetype>(step)) + kAborted);
            EXPECT_EQ(b.port.unread(), kAck.mid(position + 1));
            EXPECT_EQ(b.outcome(), Outcome::WrongAnswer);
            b.expectAborted(true);

            FlashRig c; // and cancelled there
            disturb(c, c.port.steps[step], Trouble::Cancel, position);
            c.start();
            EXPECT_EQ(c.bench.console(), FlashRig::textsUpTo(static_cast<qsizetype>(step)) + kAborted);
            EXPECT_EQ(c.outcome(), Outcome::Cancelled);
        }
    }
}

TEST(FlashFrames, LengthsOfVersionInformation) {
    const QByteArray rest = QByteArray(40'000, 'v');
    struct Row {
        std::uint32_t length;
        bool good;
        qsizetype read; // after the length
    };
    for (const Row& row : std::initializer_list<Row>{{0, false, 0},
                                                     {5, false, 0},
                                                     {8, false, 3},
                                                     {9, true, 4},
                                                     {10, true, 5},
                                                     {32'767, true, 32'762},
                                                     {32'768, false, 0},
                                                     {40'000, false, 0},
                                                     {0x01000010, false, 0},
                                                     {0xFFFFFFFF, false, 0}}) {
        SCOPED_TRACE(row.length);
        FlashRig b;
        b.port.steps[4].answer = "\x02" + leastFirst(row.length) + (row.good ? rest.left(row.read) : rest);
        b.start();
        if (row.good) {
            EXPECT_EQ(b.outcome(), Outcome::Done);
            EXPECT_TRUE(b.bench.console().startsWith(FlashRig::textsUpTo(4) + "<2>>" +
                                                     QString(static_cast<qsizetype>(row.length) - 9, 'v') +
                                                     "< done!\nSending NAND"));
            continue;
        }
        ASSERT_EQ(b.bench.boxes.shown.size(), 1);
        EXPECT_TRUE(b.bench.boxes.shown[0].startsWith(
            "[Error] ! Error communicating with COM1\nor other download problem\nError: "));
        EXPECT_EQ(b.bench.console(), FlashRig::textsUpTo(4) + "<2>" + kAborted);
        EXPECT_EQ(b.port.unread().size(), rest.size() - row.read);
        EXPECT_EQ(b.outcome(), Outcome::WrongAnswer);
        b.expectAborted(false);
    }
}

TEST(FlashFrames, CancelWithinVersionInformation) {
    for (qsizetype position = 1; position < kVersion.size(); ++position) {
        SCOPED_TRACE(position);
        FlashRig b;
        disturb(b, b.port.steps[4], Trouble::Cancel, position);
        b.start();
        EXPECT_EQ(b.outcome(), Outcome::Cancelled);
        if (position == 1) {
            // Zero bytes make the length 0, which is not allowed.
            EXPECT_EQ(b.bench.boxes.shown.size(), 1);
            EXPECT_EQ(b.bench.console(), FlashRig::textsUpTo(4) + "<2>" + kAborted);
            b.expectAborted(false);
            continue;
        }
        // After the length they make up the text, and the header's ACK then fails.
        QByteArray text = "sim 1.0";
        for (qsizetype i = std::max<qsizetype>(position - 6, 0); i < text.size(); ++i)
            text[i] = 0;
        EXPECT_TRUE(b.bench.boxes.shown.isEmpty());
        EXPECT_EQ(b.bench.console(), FlashRig::textsUpTo(4) + "<2>>" + readable(QString::fromLatin1(text)) +
                                         "< done!\nSending NAND FLASH HEADER frame .. (ERASING FLASH) .. "
                                         "get ACK .. " +
                                         kAborted);
        EXPECT_EQ(b.port.written, b.sentUpTo(5));
        b.expectAborted(true);
    }
}

} // namespace
