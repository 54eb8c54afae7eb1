#include "support/Rig.h"

namespace {

using namespace zrktest;
using zrk::Outcome;

class Memory : public ScriptedTest {};

TEST_F(Memory, IsComparedWithTheBoardsChecksum) {
    const QByteArray asked = "crc32 0x80000004 0xA000";
    const struct {
        QList<QByteArray> answers; // a quarter of a second apart; "@" is the echo of the command
        Outcome outcome = {};
        const char* failure = "";
    } rows[] = {
        {{"@\r\n", "crc32 for 80000004 ... 8000a003 ==> 00c", "0ffee\r\n=> "}, Outcome::Done, ""},
        {{"old words 00C0FFEE\r\n", "@\r\nsum=0x00C0FFEE "}, Outcome::Done, ""},
        {{"00C0FFEE\r\n"}, Outcome::LimitReached, "Received last: \"00C0FFEE"},
        {{"old words 00C0FFEE \r\n", "@\r\nsum 00C0FFE0\r\n> "},
         Outcome::WrongAnswer,
         "UBoot image: the board does not confirm CRC-32 00C0FFEE of what was sent. It answered: \"sum "
         "00C0FFE0\\r\\n>\". Either the memory holds something else, or the command does not print a CRC-32: "
         "crc32 "
         "0x80000004 0xA000"},
        {{"@\r\n", "00C0FFEE", "0 1200C0FFEE\r\n> "}, Outcome::WrongAnswer, "It answered: \"00C0FFEE0 12"},
        {{"@\r\nreading\r\n", "", "", "", "", "", "", "", "", "00C0FFEE\r\n> "}, Outcome::Done, ""},
        {{"@\r\n", QByteArray(5000, '.'), "00C0", "FFEE\r\n"}, Outcome::Done, ""},
        {{"@\r\nx00C0FFEE" + QByteArray(4088, '.'), "\r\n> "}, // of which the end is kept, from the sum on
         Outcome::WrongAnswer,
         "UBoot image: the board does not confirm"},
        {{"> ", "@\r\n", "still at it"},
         Outcome::LimitReached,
         "UBoot image: no checksum came within 5 s. Received last: \"> crc32 0x80000004 0xA000\\r\\nstill at "
         "it\""},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.failure);
        bench.fill(2, "x", "0x80000004");
        loader.state.Sent[2] = zrk::SentImage{0xC0FFEE, 0xA000};
        loader.listener.openPort({});
        port.receive("unread");
        port.written.clear();
        QByteArray heard;
        QByteArray said = "unread";
        auto when = 250ms;
        for (QByteArray answer : row.answers) {
            answer.replace("@", asked);
            said += answer;
            loop.after(when, [this, answer] { port.receive(answer); });
            when += 250ms;
        }
        loader.memoryCheck.check(2, "crc32 %a %n", 5s, [&](const QByteArray& piece) { heard += piece; });
        EXPECT_EQ(port.written, asked + '\r');
        EXPECT_EQ(loader.operation.outcome(), row.outcome);
        EXPECT_TRUE(loader.operation.failure().contains(row.failure))
            << loader.operation.failure().toStdString();
        EXPECT_EQ(heard, said) << "nothing of the board is lost";
        loader.port.CloseComPort();
    }
}

} // namespace
