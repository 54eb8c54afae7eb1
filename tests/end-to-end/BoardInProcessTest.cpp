#include "support/BoardPort.h"
#include "support/Rig.h"

namespace {

using namespace zrktest;
using zrk::Outcome;

/// Bytes of every value, with a text in them that tells the board what they stand for.
QByteArray image(qsizetype size, const QByteArray& marker = {}) {
    QByteArray bytes(size, 0);
    for (qsizetype i = 0; i < size; ++i)
        bytes[i] = static_cast<char>(i * 31 + i / 251);
    return bytes.replace(size / 2, marker.size(), marker);
}

const QByteArray kPrimary = image(9'000, "ZRK SIMULATED PRIMARY BOOT");
const QByteArray kPgSibl = image(5'000, "ZRK SIMULATED PG_SIBL");

QByteArray bytesOf(const std::vector<std::uint8_t>& bytes) {
    return {reinterpret_cast<const char*>(bytes.data()), static_cast<qsizetype>(bytes.size())};
}

/// A loader on a line to a board that the user switches on a while after being asked to.
struct BoardRig {
    explicit BoardRig(const zrkboard::BoardOptions& options = {}) : port(loop, options) {
        bench.waitDialog.whenShown = [this](zrk::WaitDialog&) { loop.after(3s, [this] { port.powerOn(); }); };
    }

    QByteArray sdram(std::uint32_t address, qsizetype size) {
        return bytesOf(port.board.sdram().read(address, static_cast<std::size_t>(size)));
    }
    QByteArray nand(std::uint32_t address, qsizetype size) {
        return bytesOf(port.board.nand().read(address, static_cast<std::size_t>(size)));
    }

    VirtualEventLoop loop;
    BoardPort port;
    Rig bench{loop, port};
    zrk::Loader& loader = bench.loader;
};

TEST(BoardInProcess, FromPowerOnToAScriptAtThePrompt) {
    BoardRig b;
    b.bench.fill(0, kPrimary, "0x0000");
    const QByteArray secondary = image(70'000); // more than the line carries within the reply time-out
    const QByteArray uboot = image(3'000);
    const QByteArray kernel = image(1);
    b.bench.fill(1, secondary, "0x80000004");
    b.bench.fill(2, uboot, "0x82000000");
    b.bench.fill(4, kernel, "0x83FFFFFF");

    b.loader.bringUp.cmdStartPrimary_Click();
    ASSERT_EQ(b.loader.operation.outcome(), Outcome::Done) << b.bench.console().toStdString();
    EXPECT_EQ(bytesOf(b.port.board.iram().read(0, static_cast<std::size_t>(kPrimary.size()))), kPrimary);
    EXPECT_EQ(b.sdram(0x80000000, 70'008), QByteArray(4, 0) + secondary + QByteArray(4, 0));

    b.loader.commands.cmdURK_Click();
    ASSERT_EQ(b.loader.operation.outcome(), Outcome::Done) << b.bench.console().toStdString();
    EXPECT_EQ(b.sdram(0x82000000, uboot.size()), uboot);
    EXPECT_EQ(b.sdram(0x83FFFFFF, 1), kernel);

    b.loader.bringUp.cmdStartSecondary_Click();
    EXPECT_TRUE(b.loader.state.TerminalMode);
    b.loader.script.runScript(b.bench.file("demo.scr", "<zrk> \n>version/n\n<zrk> \n# done\n"));
    EXPECT_EQ(b.loader.controls.staStatus.SecondPanel.value(), "4 script lines executed.");
    EXPECT_TRUE(b.bench.console().section("--- Enabling terminal mode ---", 1).contains("zrk> version\n"))
        << b.bench.console().toStdString();
    EXPECT_EQ(b.port.board.state(), zrkboard::State::Prompt);
    EXPECT_TRUE(b.bench.boxes.shown.isEmpty());
}

TEST(BoardInProcess, FlashWithAndWithoutErase) {
    const QByteArray flash = image(20'000);
    const QByteArray old(200, 0x5A);
    for (const std::uint32_t address : {0U, 0x01234500U}) {
        for (const bool erase : {true, false}) {
            SCOPED_TRACE(testing::Message() << address << (erase ? " erased" : " over old data"));
            BoardRig b;
            b.port.board.nand().program(address + 100, std::vector<std::uint8_t>(200, 0x5A));
            b.bench.fill(6, kPgSibl, "0x0000");
            b.bench.fill(5, flash, QString::number(address));
            b.loader.controls.chkErase.Value = erase ? 1 : 0;
            b.loader.flash.cmdPrgFlash_Click();
            ASSERT_EQ(b.loader.operation.outcome(), Outcome::Done) << b.bench.console().toStdString();
            QByteArray expected = flash;
            for (qsizetype i = 0; i < old.size() && !erase; ++i)
                expected[100 + i] = static_cast<char>(flash[100 + i] & old[i]);
            EXPECT_EQ(b.nand(address, flash.size()), expected);
            EXPECT_EQ(b.nand(address + 20'000, 1), "\xFF");
            EXPECT_EQ(b.port.board.state(), zrkboard::State::FlashDone);
            EXPECT_FALSE(b.port.isOpen());
        }
    }
}

TEST(BoardInProcess, TheDataFrameUsesTheLineFully) {
    BoardRig b;
    const QByteArray flash = image(126'976);
    b.bench.fill(6, kPgSibl, "0x0000");
    b.bench.fill(5, flash, "0x00000000");
    b.loader.flash.cmdPrgFlash_Click();
    ASSERT_EQ(b.loader.operation.outcome(), Outcome::Done);
    const qsizetype begin = b.port.written.indexOf(flash);
    ASSERT_GT(begin, 0);
    const auto& at = b.port.deliveredAt;
    const std::chrono::duration<double> took =
        at[static_cast<std::size_t>(begin + flash.size() - 1)] - at[static_cast<std::size_t>(begin)];
    EXPECT_LT(took.count(), static_cast<double>(flash.size()) / 11'520 / 0.995);
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
    EXPECT_EQ(b.loader.operation.outcome(), Outcome::Done);
    EXPECT_EQ(b.sdram(0x80000004, 2'000), image(2'000));
}

} // namespace
