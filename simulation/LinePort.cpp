#include "simulation/LinePort.h"

#include "platform/RuntimeFailure.h"

#include <QStringList>

#include <array>

namespace zrksim {

namespace {

constexpr qsizetype kQueue = 512;
constexpr qsizetype kDriverBuffer = 4096;

[[noreturn]] void fail(zrk::FailureKind kind, const char* text) {
    throw zrk::RuntimeFailure(kind, QString::fromLatin1(text));
}

} // namespace

/// The open port of the loader.
class LinePort::Opened final : public zrk::SerialPort {
  public:
    explicit Opened(LinePort& line) : m_line(line) {}
    ~Opened() override { m_line.close(); }
    Opened(const Opened&) = delete;
    Opened& operator=(const Opened&) = delete;

    [[nodiscard]] bool isLost() const noexcept override { return m_line.m_lost; }
    [[nodiscard]] qsizetype bytesWaiting() override { return m_line.bytesWaiting(); }
    [[nodiscard]] QByteArray read(qsizetype most) override {
        (void)m_line.bytesWaiting();
        QByteArray taken = m_line.m_received.left(most);
        m_line.m_received.remove(0, taken.size());
        return taken;
    }
    void skip(char byte) override {
        while (m_line.m_received.startsWith(byte))
            m_line.m_received.remove(0, 1);
    }
    void write(QByteArrayView bytes) override { m_line.write(bytes); }
    [[nodiscard]] qsizetype transmitRoom() override {
        m_line.requireDevice();
        return m_line.room();
    }
    [[nodiscard]] qsizetype unsentBytes() const noexcept override {
        return m_line.m_lost ? 0 : static_cast<qsizetype>(m_line.m_line.size());
    }
    void setHandshaking(zrk::Handshaking handshaking) override {
        m_line.calls.push_back(
            {m_line.m_loop.elapsed(), QStringLiteral("handshaking %1").arg(static_cast<int>(handshaking))});
        if (m_line.failsHandshaking)
            fail(zrk::FailureKind::PortLost, "The driver refused.");
    }
    bool setDtr(bool on) override {
        m_line.calls.push_back({m_line.m_loop.elapsed(), QStringLiteral("dtr %1").arg(on ? 1 : 0)});
        return true;
    }
    [[nodiscard]] std::optional<zrk::LineErrors> lineErrors() const noexcept override {
        return m_line.lineErrors;
    }

  private:
    LinePort& m_line;
};

std::unique_ptr<zrk::SerialPort> LinePort::open(int number, const zrk::LineSettings& settings,
                                                zrk::Handshaking handshaking) {
    calls.push_back({m_loop.elapsed(), QStringLiteral("open %1 %2,%3,%4,%5 handshaking %6")
                                           .arg(number)
                                           .arg(settings.baudRate)
                                           .arg(QLatin1Char(settings.parity))
                                           .arg(settings.dataBits)
                                           .arg(settings.stopBits)
                                           .arg(static_cast<int>(handshaking))});
    if (failsToOpen)
        fail(zrk::FailureKind::PortNotOpened, "The device is not there.");
    m_open = true;
    m_lost = false;
    m_received.clear();
    opened();
    return std::make_unique<Opened>(*this);
}

void LinePort::close() {
    calls.push_back({m_loop.elapsed(), QStringLiteral("close")});
    m_open = false;
    m_lost = false;
    m_line.clear();
    if (m_next)
        m_loop.cancel(*m_next);
    m_next.reset();
    closed();
}

QString LinePort::deviceName(int number) const {
    return QStringLiteral("/dev/line%1").arg(number);
}

void LinePort::requireDevice() const {
    if (m_lost)
        fail(zrk::FailureKind::PortLost, "The device is gone.");
}

qsizetype LinePort::bytesWaiting() const {
    if (m_received.isEmpty())
        requireDevice();
    return m_received.size();
}

qsizetype LinePort::room() const {
    return std::min(kQueue, kQueue + kDriverBuffer - static_cast<qsizetype>(m_line.size()));
}

void LinePort::write(QByteArrayView bytes) {
    requireDevice();
    writes.push_back(bytes.size());
    for (const char byte : bytes) {
        while (!m_lost && room() == 0) {
            if (stalled)
                fail(zrk::FailureKind::PortLost, "The line takes no data.");
            m_loop.skipTo(*m_line.nextThrough());
            settle();
        }
        requireDevice();
        written += byte;
        writtenAt.push_back(m_loop.now());
        if (paced) {
            m_line.push(std::array{static_cast<std::uint8_t>(byte)}, m_loop.now());
            if (!m_next)
                settle();
        } else
            deliver(byte, m_loop.now());
    }
}

void LinePort::settle() {
    if (m_next)
        m_loop.cancel(*m_next);
    m_next.reset();
    if (stalled)
        return;
    for (const std::uint8_t byte : m_line.take(m_loop.now()))
        deliver(static_cast<char>(byte), m_loop.now());
    if (const auto next = m_line.nextThrough())
        m_next = m_loop.schedule(*next, [this] { settle(); });
}

void LinePort::deliver(char byte, TimePoint when) {
    if (m_lost)
        return;
    deliveredAt.push_back(when);
    delivered(byte, when);
    if (static_cast<qsizetype>(deliveredAt.size()) == hangUpAfterBytes)
        hangUp();
}

void LinePort::receive(const QByteArray& bytes) {
    if (m_open && !m_lost)
        m_received += bytes;
}

void LinePort::hangUp() {
    m_lost = m_open;
    m_loop.wake();
}

QStringList LinePort::callNames() const {
    QStringList names;
    for (const Call& call : calls)
        names += call.what;
    return names;
}

} // namespace zrksim
