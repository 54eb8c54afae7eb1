#pragma once

#include <QProcess>
#include <QString>
#include <QTemporaryDir>

#include <string_view>

namespace zrkboard {

// A real serial server (ser2net) in front of a device, on the loopback address, for tests and measurements.
class SerialServer {
  public:
    // Returns when it listens. Throws std::runtime_error if it cannot be started.
    explicit SerialServer(const QString& device);
    ~SerialServer();
    SerialServer(const SerialServer&) = delete;
    SerialServer& operator=(const SerialServer&) = delete;

    // Return the device's names at the server.
    [[nodiscard]] QString raw() const;
    [[nodiscard]] QString rfc2217() const;

    void kill();

    // After a kill(): the same ports once more.
    void start();

  private:
    [[nodiscard]] QString settings() const;
    void writeSettings(const QString& device) const;

    QTemporaryDir m_folder;
    int m_rawPort;
    int m_telnetPort;
    QProcess m_process;
};

// A socket on the loopback address that listens: the system accepts connections, but nothing answers. With
// its queue filled up, the system does not accept them either.
class MuteListener {
  public:
    MuteListener();
    ~MuteListener();
    MuteListener(const MuteListener&) = delete;
    MuteListener& operator=(const MuteListener&) = delete;

    [[nodiscard]] int port() const { return m_port; }

    // Blocks until a connection has come.
    void awaitConnection() const;

    // Sends `text` to each connection within a tenth of a second, and closes it without reading.
    void refuseOne(std::string_view text) const;

    // Sends up to `most` bytes to the first connection until it takes none for half a second. Returns how
    // many it took.
    [[nodiscard]] std::size_t floodOne(std::size_t most) const;

  private:
    int m_socket;
    int m_port;
};

} // namespace zrkboard
