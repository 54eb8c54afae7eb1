#pragma once

#include "controls/Controls.h"
#include "platform/SerialPort.h"

#include <QProperty>

namespace zrk {

/// `MSComm1` and its place in the window: the one owner of the serial connection, opened with the number that
/// is selected in cmbComPort. Failures are those of SerialPort; on a closed port a function that needs an
/// open one throws RuntimeFailure (PortNotOpen). Only OpenComPort yields.
///
///     port.OpenComPort();                      // yields, throws PortNotOpened
///     port.Output(QStringLiteral("help\r"));   // blocks only while the transmit queue is full
///     while (port.InBufferCount() > 0)         // throws PortLost once a lost device has no more bytes
///         show(port.receive());
///     port.CloseComPort();
class ComPort {
  public:
    enum class InputMode { Text = 0, Binary = 1 };

    ComPort(SerialPorts& ports, Controls& controls) : m_ports(ports), m_controls(controls) {}

    /// Opens the selected port at 115200,N,8,1; does nothing if it is open. Yields while it connects to a
    /// port on the network. Ends an opening that is still under way further up the stack: the later one wins.
    /// Prints, once, what the user should know about the port beforehand.
    void OpenComPort();

    /// Closes the port, or stops opening it; does nothing if it is closed.
    void CloseComPort() noexcept;

    /// Ends an OpenComPort() further up the stack: it fails with Cancelled and changes nothing, however long
    /// it takes to return. Does nothing without one.
    void giveUpOpening();

    [[nodiscard]] bool isOpen() const noexcept { return m_open != nullptr; }
    [[nodiscard]] bool isLost() const noexcept { return m_open && m_open->isLost(); }

    /// Returns the number last selected for opening, 1 to 8.
    [[nodiscard]] int CommPort() const { return m_commPort; }

    /// Returns how many received bytes have not been read.
    [[nodiscard]] qsizetype InBufferCount();

    /// Reads at most one byte in binary mode, all in text mode. A byte is the character of its code.
    [[nodiscard]] QString Input();

    /// Reads everything waiting, in either mode.
    [[nodiscard]] QByteArray receive();

    /// Returns the last bytes that the device sent since the port was opened, some 500 to 1000, to explain a
    /// failure; kept after the port is closed.
    [[nodiscard]] const QByteArray& lastReceived() const { return m_lastReceived; }

    /// Returns the first bytes that it sent since then, 3 at most.
    [[nodiscard]] const QByteArray& firstReceived() const { return m_firstReceived; }

    /// Gives back what was read last, to be read again first; dropped when the port is closed.
    void putBack(const QByteArray& bytes) {
        m_putBack.prepend(bytes);
        m_seen += bytes.size();
    }

    /// Returns what has arrived since the last look or read, which stays there to be read.
    [[nodiscard]] QByteArray lookAhead();

    /// Returns how many of the bytes that wait in front lookAhead() has returned.
    [[nodiscard]] qsizetype seenBytes() const { return m_seen; }

    /// Drops the received bytes that wait in front as long as each is `byte`.
    void skip(char byte);

    /// Sends every character as one byte, its code. A character above 255 fails with InvalidArgument
    /// before anything is sent.
    void Output(const QString& text);
    void Output(char byte) { opened().write(QByteArrayView(&byte, 1)); }

    /// Returns how many bytes Output takes without waiting for the line.
    [[nodiscard]] qsizetype transmitRoom() { return opened().transmitRoom(); }

    /// Returns how many sent bytes have not left yet; 0 on a closed port.
    [[nodiscard]] qsizetype unsentBytes() const noexcept { return m_open ? m_open->unsentBytes() : 0; }

    /// Starts to count the device's damaged and lost bytes from 0, until the port is closed.
    void countLineErrors();

    /// Returns the errors since countLineErrors(); none if the device does not count.
    [[nodiscard]] LineErrors lineErrors() const noexcept;

    /// Sets the handshaking, also for later openings.
    void setHandshaking(Handshaking handshaking);
    void setInputMode(InputMode mode) { m_inputMode = mode; }

    /// Returns false if the port is closed or has no DTR line.
    bool setDtrEnable(bool on) { return m_open && m_open->setDtr(on); }

    /// Returns the device of the number, for display.
    [[nodiscard]] QString deviceName(int number) const { return m_ports.deviceName(number); }

    /// Returns the device that was opened last.
    [[nodiscard]] QString openedDevice() const { return m_openedDevice; }

    /// Returns the same with its number, as texts show it: "COM1 (/dev/ttyUSB0)".
    [[nodiscard]] QString openedName() const;

    /// Returns whether the selected number still means that device, or means it again, and it is there; empty
    /// if only opening it shows that.
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
    qsizetype m_seen = 0;               ///< bytes at its front that were looked at
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

/// Returns whether every character of the text has a single-byte code.
[[nodiscard]] bool fitsOneByteCodes(const QString& text);

} // namespace zrk
