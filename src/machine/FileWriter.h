#pragma once

#include "files/Record.h"

#include <QByteArrayView>
#include <QString>

#include <functional>
#include <memory>
#include <thread>

namespace zrk {

class EventLoop;

/// A record file, written by a thread of its own at most 0.2 s later, so that no call waits for the disk.
class FileWriter {
  public:
    using Told = std::function<void(const QString&)>;

    /// Overwrites an existing file, up to `longest` bytes. `what` names it in messages: "trace". Throws
    /// RuntimeFailure (File) that says what, why and what to do. `failed` gets, once and on the loop's
    /// thread, the reason why the file ended too early: by a task posted to the loop, or at the latest by
    /// end(). The file then ends with the last whole line that it took.
    FileWriter(const RecordFile& record, QString what, EventLoop& loop, Told failed,
               qint64 longest = kLongestRecord);
    ~FileWriter();
    FileWriter(const FileWriter&) = delete;
    FileWriter& operator=(const FileWriter&) = delete;

    /// Does nothing once the file has ended.
    void append(QByteArrayView bytes);

    /// Removes the last bytes of what was appended. Does nothing once the file has ended.
    void takeBack(qsizetype count);

    /// Writes the rest; abandons a file that does not take it within seconds.
    void end();

  private:
    struct Shared;

    void tellFailure();
    static void writeUntilEnd(Shared& shared);

    Told m_failed;                    ///< empty once called
    std::shared_ptr<Shared> m_shared; ///< outlives this while a write hangs
    std::shared_ptr<FileWriter*> m_self;
    std::thread m_writer;
};

} // namespace zrk
