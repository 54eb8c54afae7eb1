#pragma once

#include <QByteArray>
#include <QString>

#include <termios.h>

namespace zrk::test {

/// A pseudo-terminal: the code under test opens its device, its other end is the board. Every wait ends after
/// ten minutes with a std::runtime_error.
class Pty {
  public:
    Pty();
    ~Pty();
    Pty(const Pty&) = delete;
    Pty& operator=(const Pty&) = delete;

    [[nodiscard]] const QString& device() const { return m_device; }

    void send(const QByteArray& bytes);
    [[nodiscard]] QByteArray receive(qsizetype count);
    [[nodiscard]] bool hasReceived() const; ///< without waiting

    /// Blocks until `count` bytes that were sent lie in the driver, unread.
    void waitForUnread(int count) const;

    /// Stops and restarts the line from the device to the board: while it is stopped, the driver takes
    /// nothing.
    void stopLine() const { setFlow(TCOOFF); }
    void restartLine() const { setFlow(TCOON); }

    /// Pulls the adapter.
    void hangUp();

    [[nodiscard]] termios settings() const;
    void setSettings(const termios& settings) const;

    /// Returns a descriptor of the device side, held so that the device outlives the port that opened it.
    [[nodiscard]] int deviceDescriptor() const { return m_slave; }

  private:
    void setFlow(int action) const;

    int m_master = -1;
    int m_slave = -1;
    QString m_device;
};

} // namespace zrk::test
