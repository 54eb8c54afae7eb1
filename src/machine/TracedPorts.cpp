#include "machine/TracedPorts.h"

#include "platform/EventLoop.h"
#include "platform/RuntimeFailure.h"

#include <limits>
#include <utility>

namespace zrk {

using namespace std::chrono_literals;

namespace {

// The resolution of the times of data that arrives between the loader's calls.
constexpr std::chrono::milliseconds kLookInterval = 20ms;

// Received and not read by the loader; beyond that the port keeps the data.
constexpr qsizetype kMostReceived = qsizetype{64} * 1024;

QString nameOf(Handshaking handshaking) {
    return QStringLiteral("handshaking %1")
        .arg(handshaking == Handshaking::XonXoff ? QLatin1String("xonxoff") : QLatin1String("none"));
}

} // namespace

/// A port whose received bytes are taken as soon as they are there, since that is the time to note.
class TracedPorts::TracedPort final : public SerialPort {
  public:
    TracedPort(TracedPorts& ports, std::unique_ptr<SerialPort> port, QString opening, Handshaking handshaking)
        : m_ports(ports), m_port(std::move(port)), m_opening(std::move(opening)), m_handshaking(handshaking) {
        m_ports.m_open = this;
        noteOpen();
    }
    ~TracedPort() override {
        look();
        m_ports.note(QStringLiteral("close unsent %1").arg(m_port->unsentBytes()));
        if (m_ports.m_open == this)
            m_ports.m_open = nullptr;
    }
    TracedPort(const TracedPort&) = delete;
    TracedPort& operator=(const TracedPort&) = delete;

    void noteOpen() {
        m_ports.note(m_opening + nameOf(m_handshaking));
        m_lossNoted = false;
    }

    /// Takes what has come; never throws.
    void look() noexcept {
        if (m_received.size() >= kMostReceived)
            return;
        try {
            take();
        } catch (const RuntimeFailure& failure) {
            noteLoss(failure);
        }
    }

    [[nodiscard]] bool isLost() const noexcept override { return m_port->isLost(); }
    [[nodiscard]] qsizetype bytesWaiting() override {
        look();
        return m_received.isEmpty() ? m_port->bytesWaiting() : m_received.size();
    }
    [[nodiscard]] QByteArray read(qsizetype most) override {
        if (bytesWaiting() > most) {
            QByteArray bytes = m_received.left(std::max<qsizetype>(most, 0));
            m_received.remove(0, bytes.size());
            return bytes;
        }
        return std::exchange(m_received, {});
    }
    void skip(char byte) override {
        look();
        qsizetype count = 0;
        while (count < m_received.size() && m_received[count] == byte)
            ++count;
        m_received.remove(0, count);
    }
    void write(QByteArrayView bytes) override {
        m_ports.note(TraceFile::Direction::ToBoard, bytes);
        noticeLoss([&] { m_port->write(bytes); });
    }
    [[nodiscard]] qsizetype transmitRoom() override {
        qsizetype room = 0;
        noticeLoss([&] { room = m_port->transmitRoom(); });
        return room;
    }
    [[nodiscard]] qsizetype unsentBytes() const noexcept override { return m_port->unsentBytes(); }
    void setHandshaking(Handshaking handshaking) override {
        m_handshaking = handshaking;
        m_ports.note(nameOf(handshaking));
        noticeLoss([&] { m_port->setHandshaking(handshaking); });
    }
    bool setDtr(bool on) override {
        const bool done = m_port->setDtr(on);
        m_ports.note(QStringLiteral("dtr %1%2")
                         .arg(on ? QLatin1String("on") : QLatin1String("off"),
                              done ? QLatin1String() : QLatin1String(" (the port has no such line)")));
        return done;
    }

    [[nodiscard]] std::optional<LineErrors> lineErrors() const noexcept override {
        return m_port->lineErrors();
    }

  private:
    void take() {
        if (m_port->bytesWaiting() == 0)
            return;
        const QByteArray bytes = m_port->read(std::numeric_limits<qsizetype>::max());
        m_ports.note(TraceFile::Direction::FromBoard, bytes);
        m_received += bytes;
    }
    template <typename Action>
    void noticeLoss(Action&& action) {
        try {
            action();
        } catch (const RuntimeFailure& failure) {
            noteLoss(failure);
            throw;
        }
    }
    void noteLoss(const RuntimeFailure& failure) {
        if (!std::exchange(m_lossNoted, true))
            m_ports.note(QStringLiteral("lost ") + failure.description());
    }

    TracedPorts& m_ports;
    std::unique_ptr<SerialPort> m_port;
    QString m_opening;
    Handshaking m_handshaking;
    QByteArray m_received; ///< noted and not yet read
    bool m_lossNoted = false;
};

TracedPorts::TracedPorts(EventLoop& loop, SerialPorts& ports)
    : m_ports(ports), m_loop(loop), m_look(loop.createTimer([this] {
          if (m_open != nullptr)
              m_open->look();
      })) {}

TracedPorts::~TracedPorts() = default;

void TracedPorts::startTrace(const RecordFile& record, TraceFile::Told failed) {
    stopTrace();
    if (m_open != nullptr)
        m_open->look(); // belongs to the time before
    m_trace = std::make_unique<TraceFile>(record, m_loop, std::move(failed));
    m_look->start(kLookInterval);
    if (m_open != nullptr)
        m_open->noteOpen();
}

void TracedPorts::stopTrace() {
    if (m_open != nullptr)
        m_open->look();
    m_look->stop();
    // First, since `failed` may start the next trace.
    const auto ended = std::exchange(m_trace, nullptr);
}

std::unique_ptr<SerialPort> TracedPorts::open(int number, const LineSettings& settings,
                                              Handshaking handshaking) {
    const QString name = QStringLiteral("COM%1 %2 ").arg(number).arg(deviceName(number));
    std::unique_ptr<SerialPort> port;
    try {
        port = m_ports.open(number, settings, handshaking);
    } catch (const RuntimeFailure& failure) {
        note(QStringLiteral("refused ") + name + failure.description());
        throw;
    }
    if (m_whenOpened)
        m_whenOpened();
    return std::make_unique<TracedPort>(*this, std::move(port),
                                        QStringLiteral("open %1%2,%3,%4,%5 ")
                                            .arg(name)
                                            .arg(settings.baudRate)
                                            .arg(QLatin1Char(settings.parity))
                                            .arg(settings.dataBits)
                                            .arg(settings.stopBits),
                                        handshaking);
}

void TracedPorts::note(const QString& event) {
    if (m_trace)
        m_trace->event(event);
}

void TracedPorts::note(TraceFile::Direction direction, QByteArrayView bytes) {
    if (m_trace)
        m_trace->bytes(direction, bytes);
}

} // namespace zrk
