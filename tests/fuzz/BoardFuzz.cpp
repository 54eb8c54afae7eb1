#include "fuzz/LoaderUnderFuzz.h"

// Input: what is done, how far the board behaves well before it sends the input's bytes, how it ends, when
// the user cancels; then a counted piece for each thing the loader sends, or after a while.

namespace {

using namespace zrkfuzz;
using namespace std::chrono_literals;
using zrktest::Step;

QByteArray hex(const char* digits) {
    return QByteArray::fromHex(digits);
}

const QByteArray kPrimary = hex("1234567890");
const QByteArray kSecondary = hex("A0A1A2A3A4A5A6");
const QByteArray kUBoot = hex("B0B1B2");
const QByteArray kFlash = hex("02030405");

std::vector<Step> bringUp() {
    return {{"", "5"},
            {"A", "5"},
            {"U3", "R"},
            {hex("00000000 05000000") + kPrimary, "X"},
            {"p" + hex("00800080 07000000"), "o"},
            {kSecondary, "t"}};
}

std::vector<Step> download() {
    auto steps = bringUp();
    steps.push_back({"u" + hex("00001080 03000000"), "o"});
    steps.push_back({kUBoot, "t"});
    return steps;
}

std::vector<Step> flash() {
    const QByteArray ack = hex("020A0000000606170003");
    return {{"", "5"},
            {"A", "5"},
            {"U3", "R"},
            {hex("00000000 05000000") + kPrimary + "F", "F"},
            {"S" + hex("020A000000A6A6000003"), hex("021000000099") + "sim 1.0" + hex("123456")},
            {hex("0218000000AE 00000200 04000000 03000000 0100 00 000003"), ack},
            {hex("020D000000AF") + kFlash + hex("000003"), ack},
            {hex("020C000000A3A3000000 0003"), ack},
            {hex("020A000000B1B1000003"), ack}};
}

/// A cancel so late disturbs no good board. Waiting costs time, since the window's timers tick.
constexpr auto kNoHaste = 45s;

enum class What { BringUp, Download, Flash, Terminal, Expect, Start, Check };
constexpr std::size_t kWhats = 7;

std::vector<Step> goodSteps(What what) {
    switch (what) {
    case What::BringUp:
        return bringUp();
    case What::Flash:
        return flash();
    case What::Download:
    case What::Terminal:
    case What::Expect:
    case What::Start:
    case What::Check:
        break;
    }
    return download();
}

class Run {
  public:
    Run(Input& input, What what) : m_what(what), m_good(goodSteps(what)) {
        under.port.oneByOne = (input.byte() & 1U) != 0;
        under.port.paced = true;
        const std::size_t wellBehaved = input.byte() % (m_good.size() + 1);
        m_isGood = wellBehaved == m_good.size();
        m_ending = input.byte();
        m_cancelAt = input.byte() * 60ms + (input.byte() % 2 == 0 ? 0s : kNoHaste);
        under.port.steps = m_good;
        if (!m_isGood)
            spoil(input, wellBehaved);
        m_late = input.rest();
        under.fill(0, kPrimary, QStringLiteral("0x0000"));
        under.fill(1, kSecondary, QStringLiteral("0x80008000"));
        under.fill(2, kUBoot, QStringLiteral("0x80100000"));
        under.fill(5, kFlash, QStringLiteral("0x00020000"));
        under.fill(6, kPrimary, QStringLiteral("0x0000"));
        loader.flash.limitAnswers(20s);
    }

    void carryOut() {
        if (m_what == What::Flash) {
            under.carryOut([this] { loader.flash.cmdPrgFlash_Click(); }, m_cancelAt);
            checkEnd(m_good.size(), true);
            return;
        }
        under.carryOut([this] { loader.bringUp.cmdStartPrimary_Click(); }, m_cancelAt);
        checkEnd(bringUp().size(), false);
        if (m_what == What::BringUp || loader.operation.outcome() != zrk::Outcome::Done)
            return;
        under.carryOut([this] { loader.commands.cmdURK_Click(); }, m_cancelAt);
        checkEnd(m_good.size(), false);
        if (loader.operation.outcome() == zrk::Outcome::Done)
            goOn();
    }

  private:
    /// Makes the board send the input's bytes from this step on.
    void spoil(Input& input, std::size_t from) {
        std::vector<Step>& steps = under.port.steps;
        for (std::size_t i = from; i < steps.size() && !input.isEmpty(); ++i) {
            steps[i].answer = input.counted();
            steps[i].delay = input.byte() * 40ms;
        }
        if ((m_ending & 1U) != 0)
            steps[from].action = [this] { under.port.hangUp(); };
    }

    /// Checks that a success has the board's positive answers to all that was sent, and a failure its report.
    void checkEnd(std::size_t steps, bool closes) {
        const bool done = loader.operation.outcome() == zrk::Outcome::Done;
        require(!m_isGood || done || m_cancelAt < kNoHaste, "a good board leads to a success");
        if (!done) {
            loader.activity.refresh();
            require(!under.port.isOpen(), "a failure closes the port");
            require(!loader.controls.staStatus.FirstPanel.value().isEmpty(), "a failure is reported");
            return;
        }
        QByteArray meant;
        for (std::size_t i = 0; i < steps; ++i)
            meant += m_good[i].when;
        require(under.port.written == meant, "a success has sent what it had to");
        require(under.port.isOpen() == !closes, "a success keeps the port or closes it");
    }

    /// Goes on with the primary boot running, whatever it sends.
    void goOn() {
        const QByteArray pieces[]{m_late.left(m_late.size() / 2), m_late.mid(m_late.size() / 2)};
        under.port.follow({{"", pieces[0], nullptr, 100ms}, {"\r", pieces[1], nullptr, 100ms}});
        QByteArray heard;
        const auto hears = [&heard](const QByteArray& bytes) { heard += bytes; };
        switch (m_what) {
        case What::Terminal:
            loader.bringUp.cmdStartSecondary_Click();
            if ((m_ending & 1U) != 0)
                under.loop.after(300ms, [this] { under.port.hangUp(); });
            under.loop.runFor(2s);
            require(under.port.isOpen() == ((m_ending & 1U) == 0), "a lost port is closed, another is not");
            return;
        case What::Expect:
            under.carryOut([&] { loader.listener.expect("in:", 3s, hears); }, 200s);
            require((loader.operation.outcome() == zrk::Outcome::Done) == heard.endsWith("in:"),
                    "a text is found when it has come");
            return;
        case What::Start:
            return under.carryOut([this] { loader.listener.awaitProgram(3s); }, 200s);
        case What::Check:
            return under.carryOut(
                [&] { loader.memoryCheck.check(1, QStringLiteral("crc32 %a %n"), 3s, hears); }, 200s);
        default:
            return;
        }
    }

    What m_what;
    std::vector<Step> m_good;
    bool m_isGood = false;
    unsigned m_ending = 0;
    zrksim::Duration m_cancelAt{};
    QByteArray m_late;
    LoaderUnderFuzz under;
    zrk::Loader& loader = under.loader;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Input input(data, size);
    const auto what = static_cast<What>(input.byte() % kWhats);
    Run(input, what).carryOut();
    return 0;
}
