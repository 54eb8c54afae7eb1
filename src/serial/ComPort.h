#pragma once

#include "controls/Controls.h"
#include "platform/SerialPort.h"

#include <QProperty>

namespace zrk {

/// `MSComm1` and its place in the window: the one owner of the serial connection, opened with the number that
/// is selected in cmbComPort. Failures are RuntimeFailure as SerialPort has them; what needs an open port
/// fails on a closed one with PortNotOpen. Only OpenComPort yields.
class ComPort {
  public:
    enum class InputMode { Text = 0, Binary = 1 };

    ComPort(SerialPorts& ports, Controls& controls) : m_ports(ports), m_controls(controls) {}

    /// Opens the selected port at 115200,N,8,1; does nothing when the port is open. Yields while a port on
    /// the network is connected to. An opening that is still under way further up the stack is given up: the
    /// later one wins. What the user should know of it beforehand comes into the console, once.
    void OpenComPort();

    /// Closes the port, or gives up opening it; does nothing when it is closed.
    void CloseComPort() noexcept;

    /// Ends an OpenComPort() further up the stack: it fails with Cancelled and changes nothing, however long
    /// it takes to return. Without one it does nothing.
    void giveUpOpening();

    [[nodiscard]] bool isOpen() const noexcept { return m_open != nullptr; }
    [[nodiscard]] bool isLost() const noexcept { return m_open && m_open->isLost(); }

    /// The number last selected for opening, 1 to 8.
    [[nodiscard]] int CommPort() const { return m_commPort; }

    /// Received bytes that have not been read.
    [[nodiscard]] qsizetype InBufferCount();

    /// Binary: exactly one byte, or none. Text: everything waiting. A byte is the character of its code.
    [[nodiscard]] QString Input();

    /// Everything waiting, in either mode.
    [[nodiscard]] QByteArray receive();

    /// The last bytes that the device sent since the port was opened, some 500 to 1000, for whoever has to
    /// explain a failure; kept after the port is closed.
    [[nodiscard]] const QByteArray& lastReceived() const { return m_lastReceived; }

    /// The first bytes that it sent since then, 3 at most.
    [[nodiscard]] const QByteArray& firstReceived() const { return m_firstReceived; }

    /// Gives back what was read last, to be read again first; gone when the port is closed.
    void putBack(const QByteArray& bytes) { m_putBack.prepend(bytes); }

    /// Drops the received bytes that wait in front as long as each is `byte`.
    void skip(char byte);

    /// Sends every character as one byte, its code. A character above 255 fails with InvalidArgument
    /// before anything is sent.
    void Output(const QString& text);
    void Output(char byte) { opened().write(QByteArrayView(&byte, 1)); }

    /// Bytes that Output takes without waiting for the line.
    [[nodiscard]] qsizetype transmitRoom() { return opened().transmitRoom(); }

    /// Bytes that were sent and have not left yet; 0 on a closed port.
    [[nodiscard]] qsizetype unsentBytes() const noexcept { return m_open ? m_open->unsentBytes() : 0; }

    /// From now on the device's damaged and lost bytes are counted anew, until the port is closed.
    void countLineErrors();

    /// Those that came since then; none where the device does not count.
    [[nodiscard]] LineErrors lineErrors() const noexcept;

    /// Holds from now on, over closing and opening.
    void setHandshaking(Handshaking handshaking);
    void setInputMode(InputMode mode) { m_inputMode = mode; }

    /// False when the port is closed or has no DTR line.
    bool setDtrEnable(bool on) { return m_open && m_open->setDtr(on); }

    /// The device behind the number, for display.
    [[nodiscard]] QString deviceName(int number) const { return m_ports.deviceName(number); }

    /// The device that was opened last.
    [[nodiscard]] QString openedDevice() const { return m_openedDevice; }

    /// Whether the selected number stands for that device again or still, and it is there; nothing where that
    /// shows only when it is opened.
    [[nodiscard]] std::optional<bool> openedDeviceIsThere() const;

  private:
    void noteClosed();
    void tellNotice();
    [[nodiscard]] SerialPort& opened() const;
    [[nodiscard]] QByteArray take(qsizetype most);
    [[nodiscard]] QByteArray takeFromDevice(qsizetype most);

    SerialPorts& m_ports;
    Controls& m_controls;
    std::unique_ptr<SerialPort> m_open; ///< null while the port is closed
    QByteArray m_putBack;               ///< received, read and given back
    QByteArray m_firstReceived;
    QByteArray m_lastReceived;
    LineErrors m_errorsBefore;              ///< the device's count when counting began
    std::optional<LineErrors> m_errorsKept; ///< what had come by the time the port was closed
    int m_commPort = 1;
    QString m_openedDevice;
    QString m_toldNotice;
    unsigned m_openings = 0; ///< begun so far
    unsigned m_opening = 0;  ///< the number of the one under way; 0: none
    Handshaking m_handshaking = Handshaking::None;
    InputMode m_inputMode = InputMode::Binary;
};

/// True when every character of the text has a single-byte code.
[[nodiscard]] bool fitsOneByteCodes(const QString& text);

} // namespace zrk
