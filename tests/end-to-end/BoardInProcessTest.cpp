#include "simulation/BoardPort.h"
#include "support/Rig.h"

namespace {

using namespace zrktest;
using zrk::Outcome;

/// Makes bytes of every value, with a text in them that names the board's program.
QByteArray image(qsizetype size, const QByteArray& marker = {}) {
    QByteArray bytes(size, 0);
    for (qsizetype i = 0; i < size; ++i)
        bytes[i] = static_cast<char>(i * 31 + i / 251);
    return bytes.replace(size / 2, marker.size(), marker);
}

const QByteArray kPrimary = image(9'000, "ZRK SIMULATED PRIMARY BOOT");
const QByteArray kPgSibl = image(5'000, "ZRK SIMULATED PG_SIBL");

/// A loader on a line to a board that the user switches on a while after the request.
struct BoardRig {
    explicit BoardRig(const zrkboard::BoardOptions& options = {}) : port(loop, options) {
        bench.waitDialog.whenShown = [this](zrk::WaitDialog&) { loop.after(3s, [this] { port.powerOn(); }); };
    }

    void expectDone() {
        EXPECT_EQ(loader.operation.outcome(), Outcome::Done) << bench.console().toStdString();
    }

    VirtualEventLoop loop;
    zrksim::BoardPort port;
    Rig bench{loop, port};
    zrk::Loader& loader = bench.loader;
};

QByteArray read(const auto& memory, std::uint32_t address, qsizetype size) {
    const auto bytes = memory.read(address, static_cast<std::size_t>(size));
    return {reinterpret_cast<const char*>(bytes.data()), size};
}

TEST(BoardInProcess, FromPowerOnToAScriptAtThePrompt) {
    BoardRig b;
    const QByteArray secondary = image(70'000); // more than the line carries within the reply time-out
    const QByteArray uboot = image(3'000);
    const QByteArray kernel = image(1);
    b.bench.fill(0, kPrimary, "0x0000");
    b.bench.fill(1, secondary, "0x80000004");
    b.bench.fill(2, uboot, "0x82000000");
    b.bench.fill(4, kernel, "0x83FFFFFF");

    b.loader.bringUp.cmdStartPrimary_Click();
    b.expectDone();
    EXPECT_EQ(read(b.port.board.iram(), 0, kPrimary.size()), kPrimary);
    EXPECT_EQ(read(b.port.board.sdram(), 0x80000000, 70'008),
              QByteArray(4, 0) + secondary + QByteArray(4, 0));

    b.loader.commands.cmdURK_Click();
    b.expectDone();
    EXPECT_EQ(read(b.port.board.sdram(), 0x82000000, uboot.size()), uboot);
    EXPECT_EQ(read(b.port.board.sdram(), 0x83FFFFFF, 1), kernel);

    b.loader.bringUp.cmdStartSecondary_Click();
    EXPECT_TRUE(b.loader.state.TerminalMode);
    b.loader.script.runScript(b.bench.file("demo.scr", "<zrk> \n>version/n\n<zrk> \n# done\n"));
    EXPECT_EQ(b.loader.controls.staStatus.SecondPanel.value(), "4 script lines executed.");
    EXPECT_TRUE(b.bench.console().section("--- Enabling terminal mode ---", 1).contains("zrk> version\n"))
        << b.bench.console().toStdString();
    EXPECT_EQ(b.port.board.state(), zrkboard::State::Prompt);
    EXPECT_TRUE(b.bench.boxes.shown.isEmpty());
}

TEST(BoardInProcess, FlashesWithAndWithoutEraseAndUsesTheLineFully) {
    const QByteArray flash = image(126'976);
    for (const std::uint32_t address : {0U, 0x01234500U}) {
        for (const bool erase : {true, false}) {
            SCOPED_TRACE(testing::Message() << address << (erase ? " erased" : " over old data"));
            BoardRig b;
            b.port.board.nand().program(address + 100, std::vector<std::uint8_t>(200, 0x5A));
            b.bench.fill(6, kPgSibl, "0x0000");
            b.bench.fill(5, flash, QString::number(address));
            b.loader.controls.chkErase.Value = erase ? 1 : 0;
            b.loader.flash.cmdPrgFlash_Click();
            b.expectDone();
            QByteArray expected = flash + '\xFF';
            for (qsizetype i = 100; i < 300 && !erase; ++i)
                expected[i] = static_cast<char>(flash[i] & 0x5A);
            EXPECT_EQ(read(b.port.board.nand(), address, expected.size()), expected);
            EXPECT_EQ(b.port.board.state(), zrkboard::State::FlashDone);
            EXPECT_FALSE(b.port.isOpen());
            const auto first = b.port.deliveredAt.begin() + b.port.written.indexOf(flash);
            const std::chrono::duration<double> took = first[flash.size() - 1] - first[0];
            EXPECT_LT(took.count(), static_cast<double>(flash.size()) / 11'520 / 0.995);
        }
    }
}

TEST(BoardInProcess, ALostByteIsATimeOutAndTheNextPowerCycleWorks) {
    zrkboard::BoardOptions options;
    options.faultyRuns = 1;
    options.misbehaviour.loseCodeByte = 10'000; // within the secondary executable
    BoardRig b(options);
    b.bench.fill(0, kPrimary, "0x0000");
    b.bench.fill(1, image(2'000), "0x80000004");
    b.loader.bringUp.cmdStartPrimary_Click();
    EXPECT_EQ(b.loader.operation.outcome(), Outcome::TimedOut);
    EXPECT_TRUE(b.bench.console().endsWith("Expect final 't' .. <0>invalid char! Cancelled.\n\n"
                                           "\n--- Cancel download, closing port ---\n"));
    b.bench.expectAtRest();
    b.loader.bringUp.cmdStartPrimary_Click();
    b.expectDone();
    EXPECT_EQ(read(b.port.board.sdram(), 0x80000004, 2'000), image(2'000));
}

/// The machine sleeps, or the program is stopped, for ten minutes; the clock goes on.
TEST(BoardInProcess, ASleepOfTheMachineIsATimeOutAtMost) {
    const struct {
        const char* when; // the console ends with it
        bool flashes;
        Outcome outcome;
    } sleeps[] = {
        {"Waiting for BootID .. ", false, Outcome::Done},
        {"Sending code .. ", false, Outcome::Done},
        {"Wait for 'X' .. ", false, Outcome::TimedOut},
        {"Expect final 't' .. ", false, Outcome::TimedOut},
        {"Sending NAND FLASH DATA frame .. ", true, Outcome::Done},
        {"(ERASING FLASH) .. get ACK .. ", true, Outcome::Done},
    };
    for (const auto& sleep : sleeps) {
        SCOPED_TRACE(sleep.when);
        BoardRig b;
        b.bench.fill(sleep.flashes ? 6 : 0, sleep.flashes ? kPgSibl : kPrimary, "0x0000");
        b.bench.fill(sleep.flashes ? 5 : 1, image(30'000), "0x80000004");
        b.loader.controls.txtStartAddress[5].Text = "0";
        b.loader.controls.chkErase.Value = 1;
        Duration slept{};
        const std::function<void()> look = [&] {
            if (!b.loader.controls.txtStatus.text().endsWith(sleep.when))
                return b.loop.after(10ms, look);
            b.loop.skipTo(b.loop.now() + (slept = 10min));
        };
        look();
        sleep.flashes ? b.loader.flash.cmdPrgFlash_Click() : b.loader.bringUp.cmdStartPrimary_Click();
        EXPECT_EQ(slept, 10min);
        EXPECT_EQ(b.loader.operation.outcome(), sleep.outcome) << b.bench.console().toStdString();
        EXPECT_EQ(b.bench.boxes.shown.size(), sleep.outcome == Outcome::Done ? 0 : 1);
        EXPECT_LT(b.loop.elapsed(), 11min);
        const auto& board = b.port.board;
        const bool isWhole = (sleep.flashes ? read(board.nand(), 0, 30'000)
                                            : read(board.sdram(), 0x80000004, 30'000)) == image(30'000);
        EXPECT_TRUE(isWhole || sleep.outcome != Outcome::Done);
    }
}

} // namespace
