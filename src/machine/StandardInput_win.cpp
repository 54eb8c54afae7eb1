#include "machine/StandardInput.h"
#include "platform/EventLoop.h"

#include <array>
#include <condition_variable>
#include <mutex>
#include <thread>
#include <utility>
#include <windows.h>

namespace zrk {
namespace {

/// What the reading thread and the reader of its bytes share. Nothing ends a blocked console read, so the
/// thread may outlive the input and must then touch nothing else.
struct Shared {
    std::mutex mutex;
    std::condition_variable room;
    QByteArray waiting;
    bool ended = false;
    EventLoop* loop = nullptr; ///< null once nobody listens
};

void readInput(const std::shared_ptr<Shared>& shared, HANDLE input) {
    std::array<char, 1024> piece{};
    for (;;) {
        DWORD count = 0;
        const bool isRead =
            ReadFile(input, piece.data(), static_cast<DWORD>(piece.size()), &count, nullptr) != 0;
        std::unique_lock lock(shared->mutex);
        shared->ended = !isRead || count == 0;
        shared->waiting.append(piece.data(), static_cast<qsizetype>(count));
        if (shared->loop != nullptr)
            shared->loop->wake();
        shared->room.wait(lock, [&] { return shared->waiting.isEmpty() || shared->loop == nullptr; });
        if (shared->ended || shared->loop == nullptr)
            return;
    }
}

} // namespace

struct StandardInput::Private {
    explicit Private(EventLoop& loop) : input(GetStdHandle(STD_INPUT_HANDLE)) {
        isConsole = GetConsoleMode(input, &before) != 0;
        if (isConsole)
            SetConsoleMode(input, ENABLE_VIRTUAL_TERMINAL_INPUT);
        shared->loop = &loop;
        std::thread(readInput, shared, input).detach();
    }
    ~Private() {
        if (isConsole)
            SetConsoleMode(input, before);
        const std::scoped_lock lock(shared->mutex);
        shared->loop = nullptr;
        shared->room.notify_all();
    }
    Private(const Private&) = delete;
    Private& operator=(const Private&) = delete;

    HANDLE input;
    DWORD before = 0;
    bool isConsole = false;
    std::shared_ptr<Shared> shared = std::make_shared<Shared>();
};

StandardInput::StandardInput(EventLoop& loop) : m_private(std::make_unique<Private>(loop)) {}
StandardInput::~StandardInput() = default;

bool StandardInput::isTerminal() const {
    return m_private->isConsole;
}

QByteArray StandardInput::take() {
    const std::scoped_lock lock(m_private->shared->mutex);
    m_private->shared->room.notify_all();
    return std::exchange(m_private->shared->waiting, QByteArray());
}

bool StandardInput::hasEnded() const {
    const std::scoped_lock lock(m_private->shared->mutex);
    return m_private->shared->ended && m_private->shared->waiting.isEmpty();
}

} // namespace zrk
