#pragma once

#include <QByteArray>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <thread>

namespace zrk {

/// Writes to open files from a thread of its own, in the order of the calls, so that a reader that stalls
/// holds up nothing but its text. All functions are safe from any thread.
class StreamWriter {
  public:
    using TimePoint = std::chrono::steady_clock::time_point;

    /// What is left out first when the reader does not keep up. A result never is.
    enum class Weight { Progress, Text, Result };

    struct Piece {
        int descriptor = -1;
        QByteArray bytes;
    };
    /// What was left out.
    struct Losses {
        qint64 bytes = 0;
        qint64 pieces = 0;
    };
    /// Composes the line that reports the losses of a descriptor once its reader keeps up again. Called from
    /// any thread; must not call this writer.
    using Note = std::function<std::optional<Piece>(int descriptor, const Losses&)>;

    static constexpr qsizetype kMostWaiting = qsizetype{4} << 20;

    /// Text is left out while more than `most` bytes wait, progress while half of that does.
    explicit StreamWriter(Note note, qsizetype most = kMostWaiting);
    /// Drops what still waits; a thread that is blocked in a write is left to the end of the process.
    ~StreamWriter();
    StreamWriter(const StreamWriter&) = delete;
    StreamWriter& operator=(const StreamWriter&) = delete;

    void put(Piece piece, Weight weight);

    /// Blocks until nothing waits, until the time, or until giveUp(). Returns true when nothing waits.
    [[nodiscard]] bool drain(std::optional<TimePoint> until);
    /// Ends a present drain(), or else the next one.
    void giveUp();

    /// Bytes that wait.
    [[nodiscard]] qsizetype waiting() const;
    /// True when the descriptor takes no more: its reader has gone, or its disk is full.
    [[nodiscard]] bool hasFailed(int descriptor) const;
    /// The errno of that, or 0.
    [[nodiscard]] int failureOf(int descriptor) const;
    /// True when text for the descriptor was left out.
    [[nodiscard]] bool hasLostText(int descriptor) const;

  private:
    struct Shared;

    static void writeUntilEnd(Shared& shared);

    std::shared_ptr<Shared> m_shared; ///< outlives this while a write is blocked
    std::thread m_thread;
};

} // namespace zrk
