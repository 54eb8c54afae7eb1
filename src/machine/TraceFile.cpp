#include "machine/TraceFile.h"

#include "platform/EventLoop.h"
#include "platform/RuntimeFailure.h"

#include <QDateTime>
#include <QFile>

#include <algorithm>
#include <condition_variable>
#include <mutex>
#include <utility>
#include <vector>

namespace zrk {

using namespace std::chrono_literals;

namespace {

constexpr qsizetype kBytesInLine = 16;
constexpr std::chrono::microseconds kTogether = 20ms;
constexpr std::chrono::milliseconds kWriteInterval = 200ms;
constexpr std::chrono::milliseconds kLastWriteLimit = 3s;
constexpr std::size_t kMostPending = 1U << 18; // lines; a disk that is so far behind takes nothing any more
constexpr char kEvent = 0;

QByteArray printable(QByteArray bytes) {
    for (char& byte : bytes)
        byte = byte >= ' ' && byte <= '~' ? byte : '.';
    return bytes;
}

QByteArray header() {
    return "# zrk trace 1\n# began " +
           QDateTime::currentDateTime()
               .toOffsetFromUtc(QDateTime::currentDateTime().offsetFromUtc())
               .toString(Qt::ISODateWithMs)
               .toLatin1() +
           "\n# seconds, > to the board, < from the board\n";
}

QString cannotWrite(const QFile& file) {
    return QStringLiteral("The trace %1 cannot be written: %2.").arg(file.fileName(), file.errorString());
}

} // namespace

struct TraceFile::Entry {
    std::chrono::microseconds at{};
    char kind = kEvent;
    QByteArray bytes; ///< of an event its text

    [[nodiscard]] QByteArray line() const {
        const QByteArray time =
            QByteArray::number(static_cast<double>(at.count()) / 1e6, 'f', 6).rightJustified(12);
        if (kind == kEvent)
            return time + ' ' + bytes + '\n';
        return time + ' ' + kind + ' ' + bytes.toHex(' ').leftJustified(3 * kBytesInLine) + '|' +
               printable(bytes) + "|\n";
    }
};

struct TraceFile::Shared {
    QFile file; ///< the writer's, once it runs

    std::mutex mutex;
    std::condition_variable changed;
    // Guarded by mutex.
    std::vector<Entry> pending;
    bool ending = false;
    bool ended = false;
    QString failure;
    std::function<void()> notify; ///< has the owner look at `failure`; empty once that has gone

    void fail(const QString& why) {
        const std::scoped_lock lock(mutex);
        failure = why + QStringLiteral(" The trace ends here, the operation does not; make room or choose "
                                       "another file and start a new trace.");
        pending.clear();
        if (notify)
            notify();
    }
};

TraceFile::TraceFile(const QString& path, EventLoop& loop, Told failed)
    : m_loop(loop), m_failed(std::move(failed)), m_began(loop.now()), m_shared(std::make_shared<Shared>()),
      m_self(std::make_shared<TraceFile*>(this)) {
    m_shared->file.setFileName(path);
    if (!m_shared->file.open(QIODevice::WriteOnly | QIODevice::Truncate | QIODevice::Unbuffered))
        throw RuntimeFailure(FailureKind::File,
                             cannotWrite(m_shared->file) +
                                 QStringLiteral(" Choose a file in a folder that you may write to."));
    m_shared->notify = [&loop, owner = std::weak_ptr(m_self)] {
        loop.post([owner] {
            if (const auto self = owner.lock())
                (*self)->tellFailure();
        });
    };
    m_writer = std::thread([shared = m_shared] { writeUntilEnd(*shared); });
}

TraceFile::~TraceFile() {
    end();
}

void TraceFile::bytes(Direction direction, QByteArrayView bytes) {
    const auto at = now();
    const char kind = static_cast<char>(direction);
    const std::scoped_lock lock(m_shared->mutex);
    while (!bytes.isEmpty()) {
        const auto& pending = m_shared->pending;
        const bool together = !pending.empty() && pending.back().kind == kind &&
                              pending.back().bytes.size() < kBytesInLine &&
                              at - pending.back().at < kTogether;
        const qsizetype room = kBytesInLine - (together ? pending.back().bytes.size() : 0);
        const auto part = bytes.first(std::min(room, bytes.size()));
        if (together)
            m_shared->pending.back().bytes.append(part);
        else
            append(at, kind, part);
        bytes = bytes.sliced(part.size());
    }
}

void TraceFile::event(const QString& text) {
    const std::scoped_lock lock(m_shared->mutex);
    append(now(), kEvent, text.simplified().toUtf8());
}

void TraceFile::end() {
    {
        std::unique_lock lock(m_shared->mutex);
        m_shared->ending = true;
        m_shared->changed.notify_all();
        m_shared->changed.wait_for(lock, kLastWriteLimit, [this] { return m_shared->ended; });
        m_shared->notify = nullptr;
        if (!m_shared->ended && m_shared->failure.isEmpty())
            m_shared->failure = QStringLiteral("The trace %1 is not complete: its disk does not answer.")
                                    .arg(m_shared->file.fileName());
        if (!m_shared->ended && m_writer.joinable())
            m_writer.detach();
    }
    if (m_writer.joinable())
        m_writer.join();
    tellFailure();
}

std::chrono::microseconds TraceFile::now() const {
    return std::chrono::duration_cast<std::chrono::microseconds>(m_loop.now() - m_began);
}

void TraceFile::append(std::chrono::microseconds at, char kind, QByteArrayView bytes) {
    auto& pending = m_shared->pending;
    if (m_shared->ending || !m_shared->failure.isEmpty() || pending.size() >= kMostPending)
        return;
    pending.push_back({at, kind, bytes.toByteArray()});
    // Only then, for the writer gathers for a while anyway.
    if (pending.size() == 1)
        m_shared->changed.notify_all();
}

void TraceFile::tellFailure() {
    QString failure;
    {
        const std::scoped_lock lock(m_shared->mutex);
        failure = m_shared->failure;
    }
    if (!failure.isEmpty() && m_failed)
        std::exchange(m_failed, nullptr)(failure);
}

void TraceFile::writeUntilEnd(Shared& shared) {
    QByteArray text = header();
    qint64 whole = 0; // bytes of whole lines in the file
    bool writes = true;
    std::unique_lock lock(shared.mutex);
    while (true) {
        const bool last = shared.ending;
        const auto entries = std::exchange(shared.pending, {});
        lock.unlock();
        for (const Entry& entry : entries)
            text += entry.line();
        if (writes && entries.size() >= kMostPending) {
            writes = false;
            shared.fail(QStringLiteral("The trace %1 cannot be written: its disk is too slow.")
                            .arg(shared.file.fileName()));
        } else if (writes && shared.file.write(text) != text.size()) {
            writes = false;
            shared.fail(cannotWrite(shared.file));
            shared.file.resize(whole); // half a line would be of no use
        }
        whole += text.size();
        text.clear();
        lock.lock();
        if (last)
            break;
        shared.changed.wait(lock, [&] { return shared.ending || !shared.pending.empty(); });
        shared.changed.wait_for(lock, kWriteInterval, [&] { return shared.ending; });
    }
    shared.file.close();
    shared.ended = true;
    shared.changed.notify_all();
}

} // namespace zrk
