#pragma once

#include "controls/Controls.h"
#include "platform/SerialPort.h"

#include <QProperty>

namespace zrk {

/// `MSComm1` and its place in the window: the one serial connection, opened with the number that is
/// selected in cmbComPort. Failures are RuntimeFailure as SerialPort has them. Nothing here yields.
class ComPort {
  public:
    enum class InputMode { Text = 0, Binary = 1 };

    ComPort(SerialPort& port, Controls& controls);

    /// Opens the selected port at 115200,N,8,1; does nothing when the port is open.
    void OpenComPort();

    /// Closes the port; does nothing when it is closed.
    void CloseComPort() noexcept;

    [[nodiscard]] bool isOpen() const noexcept { return m_port.isOpen(); }
    [[nodiscard]] bool isLost() const noexcept { return m_port.isLost(); }

    /// The number last selected for opening, 1 to 8.
    [[nodiscard]] int CommPort() const { return m_commPort; }

    /// Received bytes that have not been read.
    [[nodiscard]] qsizetype InBufferCount() { return m_port.bytesWaiting(); }

    /// Binary: exactly one byte, or none. Text: everything waiting. A byte is the character of its code.
    [[nodiscard]] QString Input();

    /// Drops the received bytes that wait in front as long as each is `byte`, or all that have been received.
    void skip(char byte) { m_port.skip(byte); }
    void discardReceived();

    /// Sends every character as one byte, its code. A character above 255 fails with InvalidArgument
    /// before anything is sent.
    void Output(const QString& text);
    void Output(char byte) { m_port.write(QByteArrayView(&byte, 1)); }

    /// Bytes that were sent and have not left yet.
    [[nodiscard]] qsizetype unsentBytes() const noexcept { return m_port.unsentBytes(); }

    /// Bytes that Output takes without waiting for the line.
    [[nodiscard]] qsizetype transmitRoom() { return m_port.transmitRoom(); }

    void setHandshaking(Handshaking handshaking) { m_port.setHandshaking(handshaking); }
    void setInputMode(InputMode mode) { m_inputMode = mode; }

    /// False when the port has no DTR line.
    bool setDtrEnable(bool on) { return m_port.setDtr(on); }

    /// The device behind the number, for display.
    [[nodiscard]] QString deviceName(int number) const { return m_port.deviceName(number); }

  private:
    SerialPort& m_port;
    Controls& m_controls;
    int m_commPort = 1;
    InputMode m_inputMode = InputMode::Binary;
};

/// True when every character of the text has a single-byte code.
[[nodiscard]] bool fitsOneByteCodes(const QString& text);

} // namespace zrk
