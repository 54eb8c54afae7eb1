#include "config/HexConversions.h"
#include "flash/FlashFrames.h"
#include "fuzz/LoaderUnderFuzz.h"
#include "platform/RuntimeFailure.h"

// Input: a byte of choice, an address, then what the board sends. After its end it reads as zeros.

namespace {

using namespace zrkfuzz;
using namespace std::chrono_literals;

constexpr auto kPatience = 7s; // longer than the reply time-out, and time costs

struct Expected {
    bool good = false;
    bool fails = false;
    QByteArray text;
};

Expected versionOf(QByteArray bytes) {
    if (!bytes.startsWith('\x02'))
        return {};
    bytes += QByteArray(40'000, '\0');
    std::uint32_t length = 0;
    for (qsizetype i = 4; i > 0; --i)
        length = length << 8 | static_cast<std::uint8_t>(bytes[i]);
    if (length < 9 || length > 32767)
        return {false, true, {}};
    return {true, false, bytes.mid(6, static_cast<qsizetype>(length) - 9)};
}

void checkVersion(LoaderUnderFuzz& under, zrk::FlashFrames& frames, const QByteArray& bytes) {
    const Expected expected = versionOf(bytes);
    Expected got;
    try {
        got.good = frames.readVersionInformation().has_value();
    } catch (const zrk::RuntimeFailure& failure) {
        require(failure.kind() == zrk::FailureKind::WrongAnswer, "a bad length is a wrong answer");
        got.fails = true;
    }
    require(got.good == expected.good && got.fails == expected.fails, "a version frame is read correctly");
    if (got.good) {
        // The console prints "/n" as a line's end.
        const QString shown = QString::fromLatin1(expected.text).replace("/n", "\r\n");
        require(under.loader.controls.txtStatus.text().endsWith('>' + shown + "< done!\r\n"),
                "the version is shown");
    }
}

void checkAck(zrk::FlashFrames& frames, const QByteArray& bytes) {
    const QByteArray ack = QByteArray::fromHex("020A000000060617 0003");
    require(frames.GetAck() == bytes.startsWith(ack), "an ACK is known");
}

void checkHeader(LoaderUnderFuzz& under, zrk::FlashFrames& frames, const QString& address,
                 std::uint32_t choice) {
    const qsizetype before = under.port.written.size();
    try {
        const auto line = zrk::lineBytes(address);
        frames.sendHeaderStart(address);
        frames.sendHeaderSize(QStringLiteral("0x10"));
        frames.sendHeaderEnd((choice & 4U) != 0);
        QByteArray expected = QByteArray::fromHex("0218000000AE");
        expected.append(reinterpret_cast<const char*>(line.data()), 4);
        expected += QByteArray::fromHex("10000000 03000000 0100") + ((choice & 4U) != 0 ? '\1' : '\0') +
                    QByteArray::fromHex("000003");
        require(under.port.written.mid(before) == expected, "a header frame is whole");
    } catch (const zrk::RuntimeFailure& failure) {
        require(failure.kind() == zrk::FailureKind::TypeMismatch ||
                    failure.kind() == zrk::FailureKind::Overflow,
                "a bad address is reported", failure.description());
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Input input(data, size);
    const std::uint32_t choice = input.byte();
    const QString address = QString::fromUtf8(input.line());
    const QByteArray bytes = input.rest();
    LoaderUnderFuzz under;
    under.port.oneByOne = (choice & 1U) != 0;
    under.port.steps = {{"", bytes}};
    under.loader.port.OpenComPort();
    zrk::FlashFrames frames(under.loader.transport, under.loader.console);
    under.loop.after(kPatience, [&] { under.loader.state.requestStop(zrk::Outcome::Cancelled); });
    if ((choice & 2U) != 0)
        checkAck(frames, bytes);
    else
        checkVersion(under, frames, bytes);
    checkHeader(under, frames, address, choice);
    return 0;
}
