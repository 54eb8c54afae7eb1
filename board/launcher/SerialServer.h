#pragma once

#include <QProcess>
#include <QString>
#include <QTemporaryDir>

#include <string_view>

namespace zrkboard {

// A real serial server (ser2net) in front of a device, on the loopback address, for whoever needs one beside
// it: tests and measurements.
class SerialServer {
  public:
    // Returns when it listens. Throws std::runtime_error when there is none.
    explicit SerialServer(const QString& device);
    ~SerialServer();
    SerialServer(const SerialServer&) = delete;
    SerialServer& operator=(const SerialServer&) = delete;

    // The device's names at the server.
    [[nodiscard]] QString raw() const;
    [[nodiscard]] QString rfc2217() const;

    void kill();

  private:
    QTemporaryDir m_folder;
    int m_rawPort;
    int m_telnetPort;
    QProcess m_process;
};

// A socket on the loopback address that listens: the system accepts connections, and nobody ever answers.
// With its queue filled up it does not accept either.
class MuteListener {
  public:
    MuteListener();
    ~MuteListener();
    MuteListener(const MuteListener&) = delete;
    MuteListener& operator=(const MuteListener&) = delete;

    [[nodiscard]] int port() const { return m_port; }

    // Returns when somebody has connected.
    void awaitConnection() const;

    // Says `text` to whoever connects within a tenth of a second and closes without having heard anything.
    void refuseOne(std::string_view text) const;

    // Sends bytes to the first that connects until it takes none for half a second, at most `most` of them.
    // Returns how many it took.
    [[nodiscard]] std::size_t floodOne(std::size_t most) const;

  private:
    int m_socket;
    int m_port;
};

} // namespace zrkboard
