#include "flash/FlashFrames.h"

#include "config/HexConversions.h"
#include "platform/RuntimeFailure.h"
#include "serial/StatusConsole.h"
#include "serial/Transport.h"

#include <limits>

namespace zrk {
namespace {

constexpr std::uint8_t kStart = 0x02;
constexpr std::uint8_t kEnd = 0x03;
constexpr std::uint8_t kHeader = 0xAE;
constexpr std::uint8_t kData = 0xAF;
constexpr std::uint8_t kEndOfData = 0xA3;
constexpr std::int32_t kFrameOverhead = 9;
constexpr std::int32_t kLongestVersionFrame = std::numeric_limits<std::int16_t>::max();

std::uint8_t codeOf(const QString& character) {
    return static_cast<std::uint8_t>(character.at(0).unicode());
}

} // namespace

FlashFrames::FlashFrames(Transport& transport, StatusConsole& console)
    : m_transport(transport), m_console(console) {}

template <std::size_t N>
void FlashFrames::sendBytes(const std::array<std::uint8_t, N>& bytes) {
    for (const std::uint8_t byte : bytes)
        m_transport.SendByte(byte);
}

void FlashFrames::SendCommandFrame(std::int16_t code) {
    const auto byte = static_cast<std::uint8_t>(code);
    sendBytes(std::array<std::uint8_t, 10>{kStart, 0x0A, 0, 0, 0, byte, byte, 0, 0, kEnd});
}

bool FlashFrames::GetAck() {
    static constexpr std::array<std::uint8_t, 10> kAck{0x02, 0x0A, 0, 0, 0, 0x06, 0x06, 0x17, 0, 0x03};
    m_console.PrintStatus(QStringLiteral("get ACK .. "));
    for (const std::uint8_t expected : kAck) {
        const QString got = m_transport.ReadChar();
        if (codeOf(got) != expected) {
            m_transport.noteUnexpected(expected, got);
            return false;
        }
    }
    m_console.PrintStatus(QStringLiteral("done!/n"));
    return true;
}

std::optional<QString> FlashFrames::readVersionInformation() {
    if (!m_transport.ExpectChar(QString(QChar(kStart))))
        return std::nullopt;
    std::uint32_t length = 0;
    for (unsigned shift = 0; shift < 32; shift += 8)
        length |= static_cast<std::uint32_t>(codeOf(m_transport.ReadChar())) << shift;
    const auto fail = [length] {
        throw RuntimeFailure(FailureKind::WrongAnswer,
                             QStringLiteral("The board's version frame claims a length of %1 bytes; only 9 "
                                            "to 32767 are possible. Cycle the board's power and try again.")
                                 .arg(length));
    };
    if (length > static_cast<std::uint32_t>(kLongestVersionFrame))
        fail();
    QString s;
    for (std::uint32_t position = 6; position <= length; ++position)
        s += m_transport.ReadChar();
    if (length < static_cast<std::uint32_t>(kFrameOverhead))
        fail();
    // Print the text alone, without the command code in front and the trailer word and end byte at the end.
    s = s.mid(1, static_cast<qsizetype>(length) - kFrameOverhead);
    m_console.PrintStatus(QLatin1Char('>') + s + QStringLiteral("< done!/n"));
    return s;
}

void FlashFrames::sendHeaderStart(const QString& address) {
    sendBytes(std::array<std::uint8_t, 6>{kStart, 0x18, 0, 0, 0, kHeader});
    sendBytes(lineBytes(address));
}

void FlashFrames::sendHeaderSize(const QString& size) {
    sendBytes(lineBytes(size));
    sendBytes(std::array<std::uint8_t, 6>{0x03, 0, 0, 0, 0x01, 0});
}

void FlashFrames::sendHeaderEnd(bool erase) {
    const std::uint8_t eraseFlag = erase ? 0x01 : 0x00;
    sendBytes(std::array<std::uint8_t, 4>{eraseFlag, 0, 0, kEnd});
}

void FlashFrames::sendDataStart(std::int32_t imageSize) {
    if (imageSize > std::numeric_limits<std::int32_t>::max() - kFrameOverhead)
        throw RuntimeFailure(
            FailureKind::Overflow,
            QStringLiteral("Overflow: an image of %1 bytes is too long for one frame.").arg(imageSize));
    m_transport.SendByte(kStart);
    sendBytes(lineBytes(QString::number(imageSize + kFrameOverhead)));
    m_transport.SendByte(kData);
}

void FlashFrames::sendDataEnd() {
    sendBytes(std::array<std::uint8_t, 3>{0, 0, kEnd});
}

void FlashFrames::sendEndOfData() {
    sendBytes(std::array<std::uint8_t, 12>{kStart, 0x0C, 0, 0, 0, kEndOfData, kEndOfData, 0, 0, 0, 0, kEnd});
}

} // namespace zrk
