#include "machine/StandardInput.h"
#include "platform/EventLoop.h"

#include <QSocketNotifier>

#include <array>
#include <cerrno>
#include <optional>
#include <termios.h>
#include <unistd.h>
#include <utility>

namespace zrk {
namespace {

/// A terminal that passes on every key, as long as this exists. Its output settings stay the same, so neither
/// change waits for text that a stopped terminal does not take.
class RawTerminal {
  public:
    RawTerminal() {
        termios raw{};
        if (isatty(STDIN_FILENO) != 1 || tcgetattr(STDIN_FILENO, &raw) != 0)
            return;
        m_before = raw;
        cfmakeraw(&raw);
        raw.c_oflag = m_before->c_oflag; // messages on the same terminal keep their line ends
        (void)tcsetattr(STDIN_FILENO, TCSANOW, &raw);
    }
    ~RawTerminal() {
        if (m_before)
            (void)tcsetattr(STDIN_FILENO, TCSANOW, &*m_before);
    }
    RawTerminal(const RawTerminal&) = delete;
    RawTerminal& operator=(const RawTerminal&) = delete;

    [[nodiscard]] bool isOne() const { return m_before.has_value(); }

  private:
    std::optional<termios> m_before;
};

} // namespace

struct StandardInput::Private {
    explicit Private(EventLoop& eventLoop) : loop(eventLoop), notifier(STDIN_FILENO, QSocketNotifier::Read) {
        QObject::connect(&notifier, &QSocketNotifier::activated, &notifier, [this] { read(); });
    }

    void read() {
        std::array<char, 1024> piece{};
        const ssize_t count = ::read(STDIN_FILENO, piece.data(), piece.size());
        if (count < 0 && (errno == EINTR || errno == EAGAIN))
            return;
        if (count <= 0)
            ended = true;
        else
            waiting.append(piece.data(), count);
        notifier.setEnabled(false); // until the input has been taken
        loop.wake();
    }

    EventLoop& loop;
    RawTerminal terminal;
    QSocketNotifier notifier;
    QByteArray waiting;
    bool ended = false;
};

StandardInput::StandardInput(EventLoop& loop) : m_private(std::make_unique<Private>(loop)) {}
StandardInput::~StandardInput() = default;

bool StandardInput::isTerminal() const {
    return m_private->terminal.isOne();
}

QByteArray StandardInput::take() {
    if (!m_private->ended)
        m_private->notifier.setEnabled(true);
    return std::exchange(m_private->waiting, QByteArray());
}

bool StandardInput::hasEnded() const {
    return m_private->ended && m_private->waiting.isEmpty();
}

} // namespace zrk
