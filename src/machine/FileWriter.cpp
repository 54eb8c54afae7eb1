#include "machine/FileWriter.h"

#include "files/PrintableText.h"
#include "platform/EventLoop.h"
#include "platform/RuntimeFailure.h"

#include <QFile>

#include <algorithm>
#include <condition_variable>
#include <mutex>
#include <system_error>
#include <utility>

namespace zrk {

using namespace std::chrono_literals;

namespace {

constexpr std::chrono::milliseconds kWriteInterval = 200ms;
constexpr std::chrono::milliseconds kLastWriteLimit = 3s;
constexpr qsizetype kMostPending = qsizetype{32} << 20; // a disk so far behind counts as failed

} // namespace

struct FileWriter::Shared {
    QString what;
    QString path; ///< a QFile over a descriptor does not have it
    qint64 longest = 0;
    QFile file; ///< the writer's, once it runs

    std::mutex mutex;
    std::condition_variable changed;
    // Guarded by mutex.
    qsizetype takenBack = 0; ///< bytes at the end of the file to remove before `pending`
    QByteArray pending;
    bool isBehind = false; ///< some of what came is not in `pending`
    bool ending = false;
    bool ended = false;
    QString failure;
    std::function<void()> notify; ///< makes the owner read `failure`; empty once that has gone

    [[nodiscard]] bool hasEnded() const { return ending || isBehind || !failure.isEmpty(); }
    [[nodiscard]] bool hasWork() const { return takenBack > 0 || !pending.isEmpty(); }

    [[nodiscard]] QString cannotWrite(const QString& why) const {
        return QStringLiteral("The %1 %2 cannot be written: %3.").arg(what, printableText(path), why);
    }

    void fail(const QString& why) {
        const std::scoped_lock lock(mutex);
        failure = cannotWrite(why) + QStringLiteral(" The %1 ends here, the operation does not; make room or "
                                                    "choose another file and start a new %1.")
                                         .arg(what);
        pending.clear();
        if (notify)
            notify();
    }

    /// Returns true if all of it is in the file; else only whole lines of it are.
    [[nodiscard]] bool write(qsizetype removed, const QByteArray& bytes) {
        const bool isRemoved = removed == 0 || file.resize(file.size() - removed);
        const QString why = isRemoved ? appendToRecord(file, bytes, longest) : file.errorString();
        if (!why.isEmpty())
            fail(why);
        return why.isEmpty();
    }
};

FileWriter::FileWriter(const RecordFile& record, QString what, EventLoop& loop, Told failed, qint64 longest)
    : m_failed(std::move(failed)), m_shared(std::make_shared<Shared>()),
      m_self(std::make_shared<FileWriter*>(this)) {
    m_shared->what = std::move(what);
    m_shared->path = record.path;
    m_shared->longest = longest;
    if (const QString why = openRecord(m_shared->file, record, record.old); !why.isEmpty())
        throw RuntimeFailure(FailureKind::File,
                             m_shared->cannotWrite(why) +
                                 QStringLiteral(" Choose a file in a folder that you may write to."));
    if (m_shared->file.size() > 0) // which may end within a line
        m_shared->pending = "\n";
    m_shared->notify = [&loop, owner = std::weak_ptr(m_self)] {
        loop.post([owner] {
            if (const auto self = owner.lock())
                (*self)->tellFailure();
        });
    };
    try {
        m_writer = std::thread([shared = m_shared] { writeUntilEnd(*shared); });
    } catch (const std::system_error& error) {
        throw RuntimeFailure(FailureKind::File,
                             m_shared->cannotWrite(QString::fromLocal8Bit(error.code().message().c_str())) +
                                 QStringLiteral(" End other programs and try again."));
    }
}

FileWriter::~FileWriter() {
    end();
}

void FileWriter::append(QByteArrayView bytes) {
    const std::scoped_lock lock(m_shared->mutex);
    if (bytes.isEmpty() || m_shared->hasEnded())
        return;
    // Only then, for the writer gathers for a while anyway.
    if (m_shared->pending.isEmpty())
        m_shared->changed.notify_all();
    if (m_shared->pending.size() + bytes.size() > kMostPending)
        m_shared->isBehind = true;
    else
        m_shared->pending.append(bytes);
}

void FileWriter::takeBack(qsizetype count) {
    const std::scoped_lock lock(m_shared->mutex);
    if (m_shared->hasEnded())
        return;
    const qsizetype unwritten = std::min(count, m_shared->pending.size());
    m_shared->pending.chop(unwritten);
    m_shared->takenBack += count - unwritten;
    m_shared->changed.notify_all();
}

void FileWriter::end() {
    {
        std::unique_lock lock(m_shared->mutex);
        m_shared->ending = true;
        m_shared->changed.notify_all();
        m_shared->changed.wait_for(lock, kLastWriteLimit, [this] { return m_shared->ended; });
        m_shared->notify = nullptr;
        if (!m_shared->ended && m_shared->failure.isEmpty())
            m_shared->failure = QStringLiteral("The %1 %2 is not complete: its disk does not answer.")
                                    .arg(m_shared->what, printableText(m_shared->path));
        if (!m_shared->ended && m_writer.joinable())
            m_writer.detach();
    }
    if (m_writer.joinable())
        m_writer.join();
    tellFailure();
}

void FileWriter::tellFailure() {
    QString failure;
    {
        const std::scoped_lock lock(m_shared->mutex);
        failure = m_shared->failure;
    }
    if (!failure.isEmpty() && m_failed)
        std::exchange(m_failed, nullptr)(failure);
}

void FileWriter::writeUntilEnd(Shared& shared) {
    bool writes = true;
    std::unique_lock lock(shared.mutex);
    while (true) {
        const bool last = shared.ending;
        const bool isBehind = shared.isBehind;
        const qsizetype removed = std::exchange(shared.takenBack, 0);
        const QByteArray bytes = std::exchange(shared.pending, {});
        lock.unlock();
        writes = writes && shared.write(removed, bytes);
        if (writes && isBehind) {
            writes = false;
            shared.fail(QStringLiteral("its disk is too slow"));
        }
        lock.lock();
        if (last)
            break;
        shared.changed.wait(lock, [&] { return shared.ending || shared.hasWork(); });
        shared.changed.wait_for(lock, kWriteInterval, [&] { return shared.ending; });
    }
    lock.unlock(); // a share may block the close for long, but the owner waits 3 s only
    shared.file.close();
    lock.lock();
    shared.ended = true;
    shared.changed.notify_all();
}

} // namespace zrk
