#include "support/Rig.h"

namespace {

using namespace zrktest;
using zrk::Outcome;

class Listening : public ScriptedTest {
  protected:
    void SetUp() override { loader.listener.openPort({}); }

    Outcome expect(const QByteArray& text, std::optional<std::chrono::milliseconds> limit = {},
                   const QList<QByteArray>& unwanted = {}) {
        heard.clear();
        loader.listener.expect(
            text, limit, [this](const QByteArray& piece) { heard += piece; }, unwanted);
        EXPECT_FALSE(loader.state.OperationActive);
        return loader.operation.outcome();
    }

    QByteArray heard;
};

TEST_F(Listening, TakesOutputUpToTheTextAndLeavesTheRest) {
    for (const qsizetype piece : {1, 3, 100}) {
        const QByteArray said = QByteArray("boot\r\nlogi\x00 login: ba", 21) + "sh# ";
        for (qsizetype i = 0; i < said.size(); i += piece)
            loop.after(1ms * (i + 1), [this, bytes = said.mid(i, piece)] { port.receive(bytes); });
        EXPECT_EQ(expect("login:"), Outcome::Done);
        EXPECT_EQ(heard, QByteArray("boot\r\nlogi\x00 login:", 18));
        EXPECT_EQ(expect("# "), Outcome::Done) << "within what had come after the first text";
        EXPECT_EQ(heard, " bash# ");
    }
    EXPECT_EQ(port.callNames(), QStringList("open 1 115200,N,8,1 handshaking 0"));

    port.receive("one two");
    EXPECT_EQ(expect("one"), Outcome::Done);
    bench.fileDialog.choice = bench.file("test.scr", "< two\n>ok");
    loader.terminal.switchTo(true);
    loader.script.mnuExecScript_Click();
    EXPECT_EQ(loader.operation.outcome(), Outcome::Done) << "a script finds what was left";
    EXPECT_EQ(port.written, "ok");
}

TEST_F(Listening, AnUnwantedTextEndsIt) {
    for (const qsizetype piece : {1, 3, 100}) {
        const QByteArray said = "boot\nKernel panic - login: ";
        for (qsizetype i = 0; i < said.size(); i += piece)
            loop.after(1ms * (i + 1), [this, bytes = said.mid(i, piece)] { port.receive(bytes); });
        EXPECT_EQ(expect("login:", 30s, {"halted", "Kernel panic"}), Outcome::WrongAnswer);
        EXPECT_TRUE(
            loader.operation.failure().startsWith("\"Kernel panic\" came before \"login:\". Received"))
            << loader.operation.failure().toStdString();
        if (piece < 100) {
            EXPECT_EQ(expect("login:", 30s, {"boot"}), Outcome::Done) << "it was part of what came before";
        }
    }
    port.receive("login: Kernel panic");
    EXPECT_EQ(expect("login:", 30s, {"Kernel panic"}), Outcome::Done);
    EXPECT_EQ(expect("never", 30s, {"Kernel panic"}), Outcome::WrongAnswer)
        << "it was left for the next wait";
}

TEST_F(Listening, EveryOtherEnd) {
    loop.after(100ms, [this] { port.receive(QByteArray(300, '.') + "\x1B[0m\r\nlog"); });
    const auto begin = loop.elapsed();
    EXPECT_EQ(expect("login:", 30s), Outcome::LimitReached);
    EXPECT_EQ(loop.elapsed() - begin, 30s);
    EXPECT_EQ(loader.operation.failure(), "\"login:\" did not come within 30 s. Received last: \"" +
                                              QString(191, '.') + "\\x1B[0m\\r\\nlog\"");
    loop.after(1s, [this] { loader.portControl.cmdCancel_Click(); });
    EXPECT_EQ(expect("in:"), Outcome::Cancelled) << "what was heard is no part of the next text";
    loop.after(1s, [this] {
        port.receive("last words");
        port.hangUp();
    });
    EXPECT_EQ(expect("never"), Outcome::PortLost);
    EXPECT_EQ(heard, "last words");
}

TEST_F(Listening, OutputBeforeAPulledAdapterStaysReadable) {
    for (const char* said : {"hello", "5"}) {
        loader.port.CloseComPort();
        loader.listener.openPort({});
        port.receive(said);
        loop.after(1s, [this] { port.hangUp(); });
        loader.listener.awaitProgram(5s);
        const bool isProgram = *said != '5';
        EXPECT_EQ(loader.operation.outcome(), isProgram ? Outcome::Done : Outcome::PortLost);
        loop.runFor(100ms);
        port.hangUp();
        EXPECT_EQ(expect(said), Outcome::Done);
        EXPECT_EQ(expect("more"), Outcome::PortLost);
    }
}

TEST_F(Listening, WhetherAProgramHasStarted) {
    struct Row {
        QByteArray says;
        std::chrono::milliseconds after;
        Outcome outcome;
    };
    for (const Row& row : std::initializer_list<Row>{{"hello", 4900ms, Outcome::Done},
                                                     {"5 boards", 0ms, Outcome::Done},
                                                     {"55", 100ms, Outcome::WrongAnswer},
                                                     {"5", 100ms, Outcome::WrongAnswer},
                                                     {"hello", 5100ms, Outcome::LimitReached},
                                                     {"", 0ms, Outcome::LimitReached}}) {
        SCOPED_TRACE(row.says.toStdString());
        (void)loader.port.receive();
        const auto late = loop.schedule(loop.now() + row.after, [&] { port.receive(row.says); });
        loader.listener.awaitProgram(5s);
        loop.cancel(late);
        EXPECT_EQ(loader.operation.outcome(), row.outcome);
        if (row.outcome == Outcome::Done) {
            EXPECT_EQ(expect(row.says), Outcome::Done) << "nothing of it is lost";
        }
    }
}

TEST_F(Listening, WaitsForAPortThatComesLater) {
    loader.port.CloseComPort();
    port.failsToOpen = true;
    loader.listener.openPort({});
    EXPECT_EQ(loader.operation.outcome(), Outcome::PortNotOpened);
    loader.listener.openPort(10s);
    EXPECT_EQ(loader.operation.outcome(), Outcome::PortNotOpened);
    EXPECT_EQ(loop.elapsed() / 1s, 10);
    loop.after(5s, [this] { port.failsToOpen = false; });
    loader.listener.openPort(10s);
    EXPECT_EQ(loader.operation.outcome(), Outcome::Done);
    EXPECT_TRUE(port.isOpen());
}

} // namespace
