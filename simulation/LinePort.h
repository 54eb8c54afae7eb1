#pragma once

#include "board/PacedQueue.h"
#include "platform/SerialPort.h"
#include "simulation/VirtualEventLoop.h"

#include <optional>
#include <vector>

namespace zrksim {

/// The machine's one serial port, on virtual time, with a line whose other end is up to the subclass.
///
/// A paced line takes 11,520 bytes a second from a queue of 512 bytes and a driver's buffer of 4 KiB; an
/// unpaced one takes everything at once. Bytes for the loader arrive at the time they are given.
class LinePort : public zrk::SerialPorts {
  public:
    explicit LinePort(VirtualEventLoop& loop) : m_loop(loop) {}

    [[nodiscard]] std::unique_ptr<zrk::SerialPort> open(int number, const zrk::LineSettings& settings,
                                                        zrk::Handshaking handshaking) override;
    [[nodiscard]] QString deviceName(int number) const override;
    [[nodiscard]] std::optional<bool> isThere(int /*number*/) const override { return isPresent; }
    [[nodiscard]] QString notice(int /*number*/) const override { return noticed; }
    [[nodiscard]] bool isOpen() const { return m_open; }

    // The line and what happens to it.
    bool paced = false;
    bool stalled = false;                      ///< takes no byte any more
    bool failsToOpen = false;                  ///< "The device is not there."
    bool failsHandshaking = false;             ///< "The driver refused."
    std::optional<bool> isPresent;             ///< as the machine reports
    QString noticed;                           ///< what a user should know about the port
    std::optional<zrk::LineErrors> lineErrors; ///< as the device counts them
    qsizetype hangUpAfterBytes = 0;            ///< hangs up when the far end has got so many; 0: never
    void hangUp();

    /// Hands the loader bytes that arrive now; they are lost while the port is closed.
    void receive(const QByteArray& bytes);

    // What the loader did.
    struct Call {
        Duration when;
        QString what; ///< "open 1 115200,N,8,1 handshaking 0", "close", "handshaking 1", "dtr 0"
    };
    std::vector<Call> calls;
    QByteArray written;                 ///< all bytes handed over, in order
    std::vector<qsizetype> writes;      ///< how many bytes each call handed over
    std::vector<TimePoint> writtenAt;   ///< and when
    std::vector<TimePoint> deliveredAt; ///< when the far end got each
    [[nodiscard]] const QByteArray& unread() const { return m_received; }
    [[nodiscard]] QStringList callNames() const;

  protected:
    virtual void opened() {}
    virtual void closed() {}
    virtual void delivered(char byte, TimePoint when) = 0;

    VirtualEventLoop& m_loop;

  private:
    class Opened;

    void close();
    [[nodiscard]] qsizetype bytesWaiting() const;
    [[nodiscard]] qsizetype room() const;
    void write(QByteArrayView bytes);
    void requireDevice() const;
    void settle();
    void deliver(char byte, TimePoint when);

    bool m_open = false;
    bool m_lost = false;
    QByteArray m_received;
    zrkboard::PacedQueue m_line{11'520};
    std::optional<VirtualEventLoop::Event> m_next;
};

} // namespace zrksim
