#include "board/launcher/SerialServer.h"

#include <QElapsedTimer>
#include <QFile>
#include <QStandardPaths>

#include <arpa/inet.h>
#include <poll.h>
#include <stdexcept>
#include <sys/socket.h>
#include <unistd.h>

namespace zrkboard {
namespace {

sockaddr_in loopback(int port) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(static_cast<std::uint16_t>(port));
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    return address;
}

// Listens on a free port; returns its number.
int listenAnywhere(int socket) {
    sockaddr_in address = loopback(0);
    socklen_t size = sizeof address;
    auto* plain = reinterpret_cast<sockaddr*>(&address);
    if (::bind(socket, plain, size) != 0 || ::listen(socket, 0) != 0 ||
        ::getsockname(socket, plain, &size) != 0)
        throw std::runtime_error("no free port on the loopback address");
    return ntohs(address.sin_port);
}

// Returns a free port number. It was bound so shortly that no other process gets it in the meantime.
int freePort() {
    return MuteListener().port();
}

} // namespace

MuteListener::MuteListener()
    : m_socket(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)), m_port(listenAnywhere(m_socket)) {}

MuteListener::~MuteListener() {
    ::close(m_socket);
}

void MuteListener::awaitConnection() const {
    pollfd entry{m_socket, POLLIN, 0};
    if (::poll(&entry, 1, 600'000) != 1)
        throw std::runtime_error("no connection came");
}

void MuteListener::refuseOne(std::string_view text) const {
    pollfd entry{m_socket, POLLIN, 0};
    if (::poll(&entry, 1, 100) != 1)
        return;
    const int connection = ::accept4(m_socket, nullptr, nullptr, SOCK_CLOEXEC);
    (void)::send(connection, text.data(), text.size(), MSG_NOSIGNAL);
    ::close(connection);
}

std::size_t MuteListener::floodOne(std::size_t most) const {
    awaitConnection();
    const int connection = ::accept4(m_socket, nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK);
    const std::string block(std::size_t{64} << 10, 'x');
    std::size_t taken = 0;
    pollfd entry{connection, POLLOUT, 0};
    while (taken < most && ::poll(&entry, 1, 500) == 1) {
        const ssize_t count = ::send(connection, block.data(), block.size(), MSG_NOSIGNAL);
        if (count <= 0)
            break;
        taken += static_cast<std::size_t>(count);
    }
    ::close(connection);
    return taken;
}

SerialServer::SerialServer(const QString& device) : m_rawPort(freePort()), m_telnetPort(freePort()) {
    writeSettings(device);
    start();
}

void SerialServer::writeSettings(const QString& device) const {
    QFile file(settings());
    if (!file.open(QIODevice::WriteOnly))
        throw std::runtime_error("cannot write a file for ser2net's settings");
    const auto connection = [&](const char* name, const QString& accepter) {
        file.write(QStringLiteral("connection: &%1\n  accepter: %2\n  connector: serialdev,%3,9600e72\n")
                       .arg(QString::fromLatin1(name), accepter, device)
                       .toUtf8());
    };
    connection("raw", QStringLiteral("tcp,127.0.0.1,%1").arg(m_rawPort));
    connection("telnet", QStringLiteral("telnet(rfc2217),tcp,127.0.0.1,%1").arg(m_telnetPort));
}

QString SerialServer::settings() const {
    return m_folder.filePath(QStringLiteral("ser2net.yaml"));
}

void SerialServer::start() {
    QString program = QStandardPaths::findExecutable(QStringLiteral("ser2net"));
    if (program.isEmpty()) // not in an ordinary user's path
        program = QStandardPaths::findExecutable(QStringLiteral("ser2net"), {QStringLiteral("/usr/sbin")});
    if (program.isEmpty())
        throw std::runtime_error("ser2net is missing; install it: apt-get install ser2net");
    m_process.setProcessChannelMode(QProcess::MergedChannels);
    m_process.start(program, {"-n", "-d", "-c", settings()});
    // "-d" alone does not report when it listens, and a connection would occupy the device for a moment.
    QElapsedTimer clock;
    clock.start();
    const auto listens = [](int port) {
        const int socket = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
        const sockaddr_in address = loopback(port);
        const bool bound = ::bind(socket, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
        ::close(socket);
        return !bound;
    };
    while (!listens(m_rawPort) || !listens(m_telnetPort)) {
        if (clock.hasExpired(60000) || m_process.waitForFinished(10))
            throw std::runtime_error("ser2net does not listen: " + m_process.readAll().toStdString());
    }
}

SerialServer::~SerialServer() {
    kill();
}

QString SerialServer::raw() const {
    return QStringLiteral("tcp:127.0.0.1:%1").arg(m_rawPort);
}

QString SerialServer::rfc2217() const {
    return QStringLiteral("rfc2217:127.0.0.1:%1").arg(m_telnetPort);
}

void SerialServer::kill() {
    m_process.kill();
    m_process.waitForFinished();
}

} // namespace zrkboard
