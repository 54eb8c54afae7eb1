#include "cli/FullPipe.h"

#include <array>
#include <fcntl.h>
#include <poll.h>
#include <stdexcept>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr int kPatience = 600'000; // milliseconds; only a fault lasts that long

} // namespace

FullPipe::FullPipe() {
    const QByteArray name = path().toLocal8Bit();
    if (::mkfifo(name.constData(), 0600) != 0)
        throw std::runtime_error("pipe: cannot be made");
    m_reader = ::open(name.constData(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    m_writer = ::open(name.constData(), O_WRONLY | O_NONBLOCK | O_CLOEXEC);
    ::fcntl(m_writer, F_SETPIPE_SZ, 4096);
    while (::write(m_writer, "", 1) == 1)
        ++m_filled;
    ::fcntl(m_writer, F_SETFL, O_WRONLY);
}

FullPipe::~FullPipe() {
    closeReadingEnd();
    ::close(m_writer);
}

void FullPipe::closeReadingEnd() {
    if (m_reader >= 0)
        ::close(m_reader);
    m_reader = -1;
}

QByteArray FullPipe::readUntil(const QByteArray& text) {
    while (!m_received.contains(text)) {
        pollfd entry{m_reader, POLLIN, 0};
        std::array<char, 4096> piece{};
        const ssize_t count =
            ::poll(&entry, 1, kPatience) == 1 ? ::read(m_reader, piece.data(), piece.size()) : -1;
        if (count <= 0)
            throw std::runtime_error("pipe: the text has not come");
        m_received.append(piece.data(), count);
        const qsizetype filler = std::min<qsizetype>(m_filled, m_received.size());
        m_received.remove(0, filler);
        m_filled -= filler;
    }
    return m_received;
}
