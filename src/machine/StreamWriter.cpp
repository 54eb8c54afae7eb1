#include "machine/StreamWriter.h"

#include "machine/Descriptors.h"

#include <cerrno>
#include <condition_variable>
#include <deque>
#include <map>
#include <mutex>
#include <utility>

namespace zrk {
namespace {

constexpr qsizetype kMostAtOnce = qsizetype{64} * 1024;

} // namespace

struct StreamWriter::Shared {
    struct State {
        Losses losses;         ///< since the last note
        bool hasGap = false;   ///< text is among them, so more text would leave a hole
        bool lostText = false; ///< ever
        bool failed = false;
        int error = 0;
    };

    Note note;
    qsizetype most = 0;

    std::mutex mutex;
    std::condition_variable changed;
    // Guarded by mutex.
    std::deque<Piece> queue;
    qsizetype waiting = 0; ///< bytes, those being written included
    std::map<int, State> states;
    bool givenUp = false;
    bool ending = false;

    void append(Piece piece) {
        waiting += piece.bytes.size();
        queue.push_back(std::move(piece));
        changed.notify_all();
    }

    void lose(State& state, const Piece& piece, Weight weight) {
        state.losses.bytes += piece.bytes.size();
        ++state.losses.pieces;
        if (weight == Weight::Text)
            state.hasGap = state.lostText = true;
    }

    void reportLosses() {
        if (waiting > most / 4)
            return;
        for (auto& [descriptor, state] : states) {
            if (state.losses.pieces == 0 || state.failed)
                continue;
            state.hasGap = false;
            if (auto line = note(descriptor, std::exchange(state.losses, {})))
                append(std::move(*line));
        }
    }

    /// Stops writing to it for good, even if there is room again: text with a hole is worse than its end.
    void fail(int descriptor, int error) {
        states[descriptor].failed = true;
        states[descriptor].error = error;
        std::erase_if(queue, [&](const Piece& piece) {
            const bool isIts = piece.descriptor == descriptor;
            waiting -= isIts ? piece.bytes.size() : 0;
            return isIts;
        });
    }

    /// Takes the next data for one descriptor, many small pieces in one write.
    Piece next() {
        Piece piece = std::move(queue.front());
        queue.pop_front();
        while (!queue.empty() && queue.front().descriptor == piece.descriptor &&
               piece.bytes.size() + queue.front().bytes.size() <= kMostAtOnce) {
            piece.bytes += queue.front().bytes;
            queue.pop_front();
        }
        return piece;
    }

    void write(const Piece& piece) {
        qsizetype begin = 0;
        while (begin < piece.bytes.size()) {
            const qsizetype left = piece.bytes.size() - begin;
            const auto written =
                writeSome(piece.descriptor, piece.bytes.constData() + begin, static_cast<std::size_t>(left));
            const int error = errno;
            const qsizetype done = written < 0 ? left : written;
            const std::scoped_lock lock(mutex);
            begin += done;
            waiting -= done;
            if (written < 0)
                fail(piece.descriptor, error);
            reportLosses();
            changed.notify_all();
        }
    }
};

StreamWriter::StreamWriter(Note note, qsizetype most) : m_shared(std::make_shared<Shared>()) {
    m_shared->note = std::move(note);
    m_shared->most = most;
    m_thread = std::thread([shared = m_shared] { writeUntilEnd(*shared); });
}

StreamWriter::~StreamWriter() {
    bool isIdle = false;
    {
        const std::scoped_lock lock(m_shared->mutex);
        isIdle = m_shared->waiting == 0;
        m_shared->ending = true;
        m_shared->note = [](int, const Losses&) { return std::optional<Piece>(); };
        m_shared->changed.notify_all();
    }
    if (isIdle)
        m_thread.join();
    else
        m_thread.detach();
}

void StreamWriter::put(Piece piece, Weight weight) {
    const std::scoped_lock lock(m_shared->mutex);
    Shared::State& state = m_shared->states[piece.descriptor];
    if (piece.bytes.isEmpty() || state.failed)
        return;
    const qsizetype most = weight == Weight::Progress ? m_shared->most / 2 : m_shared->most;
    const bool isFull = m_shared->waiting > 0 && m_shared->waiting + piece.bytes.size() > most;
    if (weight != Weight::Result && (isFull || state.hasGap))
        m_shared->lose(state, piece, weight);
    else
        m_shared->append(std::move(piece));
}

bool StreamWriter::drain(std::optional<TimePoint> until) {
    std::unique_lock lock(m_shared->mutex);
    const auto isOver = [this] { return m_shared->waiting == 0 || m_shared->givenUp; };
    if (until)
        m_shared->changed.wait_until(lock, *until, isOver);
    else
        m_shared->changed.wait(lock, isOver);
    m_shared->givenUp = false;
    return m_shared->waiting == 0;
}

void StreamWriter::giveUp() {
    const std::scoped_lock lock(m_shared->mutex);
    m_shared->givenUp = true;
    m_shared->changed.notify_all();
}

qsizetype StreamWriter::waiting() const {
    const std::scoped_lock lock(m_shared->mutex);
    return m_shared->waiting;
}

bool StreamWriter::hasFailed(int descriptor) const {
    const std::scoped_lock lock(m_shared->mutex);
    return m_shared->states[descriptor].failed;
}

int StreamWriter::failureOf(int descriptor) const {
    const std::scoped_lock lock(m_shared->mutex);
    return m_shared->states[descriptor].error;
}

bool StreamWriter::hasLostText(int descriptor) const {
    const std::scoped_lock lock(m_shared->mutex);
    return m_shared->states[descriptor].lostText;
}

void StreamWriter::writeUntilEnd(Shared& shared) {
    std::unique_lock lock(shared.mutex);
    while (true) {
        shared.changed.wait(lock, [&] { return shared.ending || !shared.queue.empty(); });
        if (shared.ending)
            return;
        const Piece piece = shared.next();
        lock.unlock();
        shared.write(piece);
        lock.lock();
    }
}

} // namespace zrk
