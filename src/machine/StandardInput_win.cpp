#include "machine/StandardInput.h"
#include "platform/EventLoop.h"

#include <QStringEncoder>

#include <array>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>
#include <utility>
#include <windows.h>

namespace zrk {
namespace {

/// The shared state of the reading thread and the reader of its bytes. Nothing ends a blocked console read,
/// so the thread may outlive the input and must then touch nothing else.
struct Shared {
    std::mutex mutex;
    std::condition_variable room;
    QByteArray waiting;
    bool ended = false;
    EventLoop* loop = nullptr; ///< null once the reader has gone
};

/// Blocks until there is some input, and appends it; returns false at its end.
using Reader = std::function<bool(QByteArray& into)>;

Reader plainReader(HANDLE input) {
    return [input, piece = std::array<char, 1024>{}](QByteArray& into) mutable {
        DWORD count = 0;
        if (ReadFile(input, piece.data(), static_cast<DWORD>(piece.size()), &count, nullptr) == 0)
            return false;
        into.append(piece.data(), static_cast<qsizetype>(count));
        return count > 0;
    };
}

/// Reads a console. As a file, Ctrl-Z would end the input, and characters that are not ASCII would be lost on
/// consoles without UTF-8 input.
Reader consoleReader(HANDLE console) {
    return [console, piece = std::array<wchar_t, 512>{},
            toUtf8 = std::make_shared<QStringEncoder>(QStringConverter::Utf8)](QByteArray& into) mutable {
        DWORD count = 0;
        if (ReadConsoleW(console, piece.data(), static_cast<DWORD>(piece.size()), &count, nullptr) == 0)
            return false;
        // Half of a character outside the basic plane waits for the other. Ctrl-Break may end a read without
        // any character, which is not the end.
        into.append(toUtf8->encode(QStringView(piece.data(), static_cast<qsizetype>(count))));
        return true;
    };
}

void readInput(const std::shared_ptr<Shared>& shared, const Reader& read) {
    for (bool goesOn = true; goesOn;) {
        QByteArray piece;
        const bool isRead = read(piece);
        std::unique_lock lock(shared->mutex);
        shared->ended = !isRead;
        shared->waiting.append(piece);
        if (shared->loop != nullptr)
            shared->loop->wake();
        shared->room.wait(lock, [&] { return shared->waiting.isEmpty() || shared->loop == nullptr; });
        goesOn = isRead && shared->loop != nullptr;
    }
}

} // namespace

struct StandardInput::Private {
    explicit Private(EventLoop& loop) : input(GetStdHandle(STD_INPUT_HANDLE)) {
        isConsole = GetConsoleMode(input, &before) != 0;
        if (isConsole)
            SetConsoleMode(input, ENABLE_VIRTUAL_TERMINAL_INPUT);
        shared->loop = &loop;
        std::thread(readInput, shared, isConsole ? consoleReader(input) : plainReader(input)).detach();
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
