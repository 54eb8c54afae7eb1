#pragma once

#include <QString>

#include <array>
#include <cstdint>
#include <optional>

namespace zrk {

class StatusConsole;
class Transport;

/// The frames of the flash-programming image. All have this layout, both ways:
///
/// | offset | width | field        | content                                                    |
/// |--------|-------|--------------|------------------------------------------------------------|
/// | 0      | 1     | start byte   | 02                                                         |
/// | 1      | 4     | frame length | L, start byte to end byte inclusive, least significant first |
/// | 5      | 1     | command code |                                                            |
/// | 6      | L - 9 | payload      |                                                            |
/// | L - 3  | 2     | trailer word | 00 00 from the host, 17 00 in an ACK                       |
/// | L - 1  | 1     | end byte     | 03                                                         |
///
/// Port failures pass through as RuntimeFailure.
class FlashFrames {
  public:
    static constexpr std::int16_t kVersionRequest = 0xA6;
    static constexpr std::int16_t kComplete = 0xB1;

    FlashFrames(Transport& transport, StatusConsole& console);

    /// Writes the 10-byte frame 02 | 0A 00 00 00 | code | code | 00 00 | 03.
    void SendCommandFrame(std::int16_t code);

    /// Reads an ACK: 02 | 0A 00 00 00 | 06 | 06 | 17 00 | 03. Returns false at the first byte that differs;
    /// what follows stays unread. No time limit; yields; a cancel reads as a zero byte.
    [[nodiscard]] bool GetAck();

    /// Reads VERSION INFORMATION (length 9 to 32767), prints its text and returns it. Returns nothing if it
    /// does not begin with 02. A length out of range is a RuntimeFailure (WrongAnswer). Yields, without a time
    /// limit.
    [[nodiscard]] std::optional<QString> readVersionInformation();

    /// Sends the first ten bytes of NAND FLASH HEADER: 02 | 18 00 00 00 | AE | flash address, 4. The text is
    /// a number as HexByte takes it.
    void sendHeaderStart(const QString& address);

    /// Sends its next ten: image size, 4 | 03 00 00 00 | 01 | 00.
    void sendHeaderSize(const QString& size);

    /// Sends its last four: erase flag 00 or 01 | 00 00 | 03.
    void sendHeaderEnd(bool erase);

    /// Sends the first six bytes of NAND FLASH DATA: 02 | image size + 9, 4 | AF. The payload follows. A size
    /// whose frame length exceeds a signed long is a RuntimeFailure (Overflow).
    void sendDataStart(std::int32_t imageSize);

    /// Sends its last three: 00 00 | 03.
    void sendDataEnd();

    /// Sends END-OF-DATA: 02 | 0C 00 00 00 | A3 | A3 00 00 | 00 00 | 03.
    void sendEndOfData();

  private:
    template <std::size_t N>
    void sendBytes(const std::array<std::uint8_t, N>& bytes);

    Transport& m_transport;
    StatusConsole& m_console;
};

} // namespace zrk
