#pragma once

#include <QByteArray>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <thread>

namespace zrk {

/// A writer to open files on a thread of its own, in the order of the calls, so that a reader that stalls
/// delays only its text. Any thread may call all functions.
class StreamWriter {
  public:
    using TimePoint = std::chrono::steady_clock::time_point;

    /// The priority when the reader does not keep up: progress is left out first, a result never.
    enum class Weight { Progress, Text, Result };

    struct Piece {
        int descriptor = -1;
        QByteArray bytes;
    };
    /// The data that was left out.
    struct Losses {
        qint64 bytes = 0;
        qint64 pieces = 0;
    };
    /// Composes the line that reports the losses of a descriptor once its reader keeps up again. Called from
    /// any thread; must not call this writer.
    using Note = std::function<std::optional<Piece>(int descriptor, const Losses&)>;

    static constexpr qsizetype kMostWaiting = qsizetype{4} << 20;

    /// Leaves text out while more than `most` bytes wait, progress while half of that does.
    explicit StreamWriter(Note note, qsizetype most = kMostWaiting);
    /// Drops what still waits; leaves a thread that is blocked in a write to the end of the process.
    ~StreamWriter();
    StreamWriter(const StreamWriter&) = delete;
    StreamWriter& operator=(const StreamWriter&) = delete;

    void put(Piece piece, Weight weight);

    /// Blocks until nothing waits, until the time, or until giveUp(). Returns true if nothing waits.
    [[nodiscard]] bool drain(std::optional<TimePoint> until);
    /// Ends a present drain(), or else the next one.
    void giveUp();

    /// Returns how many bytes wait.
    [[nodiscard]] qsizetype waiting() const;
    /// Returns whether the descriptor takes no more: its reader has gone, or its disk is full.
    [[nodiscard]] bool hasFailed(int descriptor) const;
    /// The errno of that, or 0.
    [[nodiscard]] int failureOf(int descriptor) const;
    /// Returns whether text for the descriptor was left out.
    [[nodiscard]] bool hasLostText(int descriptor) const;

  private:
    struct Shared;

    static void writeUntilEnd(Shared& shared);

    std::shared_ptr<Shared> m_shared; ///< outlives this while a write is blocked
    std::thread m_thread;
};

} // namespace zrk
