#include "files/SharedRecord.h"
#include "machine/LogFile.h"
#include "machine/QtEventLoop.h"
#include "platform/RuntimeFailure.h"

#include <QDir>
#include <QFile>
#include <QStringList>
#include <QTemporaryDir>
#include <QTimeZone>

#include <gtest/gtest.h>

#include <thread>
#include <vector>

#ifndef _WIN32
#include <csignal>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>
#endif

namespace {

using namespace std::chrono_literals;

QByteArray contentOf(const QString& path) {
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    return file.readAll();
}

TEST(LogFile, StampsLinesAsTheyBegin) {
    const QTemporaryDir folder;
    zrk::QtEventLoop loop;
    QDateTime now({2026, 3, 1}, {14, 5, 6, 789}, QTimeZone::utc());
    zrk::LogFile log(folder.filePath("a.log"), loop, nullptr, [&now] { return now; });
    log.append("not yet\r\nhal");
    log.setTimeStamps(true);
    log.append("f\r");
    now = now.addMSecs(11);
    log.append("\n\n\xC3\xA4 a line");
    now = now.addMSecs(1000);
    log.append(" goes on\rover");
    log.append("\rx"); // and back to a line that had begun a second before
    log.takeBack();
    log.takeBack();
    now = now.addMSecs(1000);
    log.append("!\r\n");
    log.takeBack();
    log.append("z");
    log.end();
    log.append("too late");
    EXPECT_EQ(contentOf(folder.filePath("a.log")),
              "not yet\r\nhalf\r\n\n2026-03-01 14:05:06.800 \xC3\xA4 a line goes on\r"
              "2026-03-01 14:05:07.800 over!\r2026-03-01 14:05:08.800 z");
}

TEST(FileWriter, WritesAllWhileTheProgramGoesOnAndAtItsEnd) {
    const QTemporaryDir folder;
    zrk::QtEventLoop loop;
    zrk::FileWriter file(folder.filePath("a"), "log", loop, nullptr);
    const QByteArray piece(100'000, 'x');
    for (int i = 0; i < 50; ++i)
        file.append(piece);
    while (QFile(folder.filePath("a")).size() < 50 * piece.size())
        loop.yield();
    file.takeBack(10); // from the disk
    file.append("the end?");
    file.takeBack(1);
    file.end();
    EXPECT_TRUE(contentOf(folder.filePath("a")) == piece.repeated(50).chopped(10) + "the end");
}

#ifndef _WIN32
TEST(FileWriter, AFullDiskIsReportedOnceAndEndsTheFileOnly) {
    zrk::QtEventLoop loop;
    QStringList reports;
    const QTemporaryDir folder;
    const QString path = folder.filePath("a");
    rlimit before{};
    getrlimit(RLIMIT_FSIZE, &before);
    const rlimit small{1000, before.rlim_max}; // as most disks, full in the middle of a write
    setrlimit(RLIMIT_FSIZE, &small);
    const auto ignored = std::signal(SIGXFSZ, SIG_IGN);
    zrk::FileWriter file(path, "log", loop, [&reports](const QString& why) { reports += why; });
    file.append(QByteArray("a line of 20 bytes.\n").repeated(40) + QByteArray(300, 'x') + "\n");
    while (reports.isEmpty())
        loop.wait();
    setrlimit(RLIMIT_FSIZE, &before);
    std::signal(SIGXFSZ, ignored);
    file.append("another\n");
    file.end();
    EXPECT_EQ(reports,
              QStringList("The log " + path +
                          " cannot be written: File too large. The log ends here, the operation does not; "
                          "make room or choose another file and start a new log."));
    EXPECT_EQ(contentOf(path).size(), 800);
}

TEST(FileWriter, AFloodEndsTheFileAtItsLimit) {
    zrk::QtEventLoop loop;
    QStringList reports;
    const QTemporaryDir folder;
    zrk::FileWriter file(
        folder.filePath("a"), "trace", loop, [&reports](const QString& why) { reports += why; }, 50);
    file.append(QByteArray("a line of 20 bytes.\n").repeated(40));
    file.end();
    EXPECT_EQ(contentOf(folder.filePath("a")).size(), 40);
    EXPECT_TRUE(reports.size() == 1 && reports[0].contains("it has reached its limit of 50 bytes. The trace "
                                                           "ends here, the operation does not;"));
}

/// Another account may write to the folder of a record, and another run may be writing the record.
TEST(FileWriter, WritesOnlyToARegularFileOfItsOwn) {
    zrk::QtEventLoop loop;
    const QTemporaryDir folder;
    const auto path = [&folder](const char* name) { return folder.filePath(name); };
    // A dry run has to find the same reasons, and must leave the file as it was.
    const auto failure = [&loop, inputs = QStringList{path("input")}](const QString& name) {
        const QString foreseen = zrk::recordProblem({name, inputs});
        try {
            const zrk::FileWriter file({name, inputs}, "trace", loop, nullptr);
        } catch (const zrk::RuntimeFailure& refused) {
            EXPECT_FALSE(foreseen.isEmpty()) << name.toStdString();
            EXPECT_TRUE(refused.description().contains(" cannot be written: " + foreseen + '.'));
            return refused.description();
        }
        EXPECT_EQ(foreseen, "") << name.toStdString();
        return QString();
    };
    ASSERT_TRUE(QFile::link(path("target"), path("link")));
    ASSERT_EQ(mkfifo(qPrintable(path("pipe")), 0600), 0);
    EXPECT_TRUE(failure(path("link")).contains("cannot be written: it is a link."));
    EXPECT_FALSE(QFile::exists(path("target")));
    for (const QString& name : {path("pipe"), folder.path(), QString("/dev/null")})
        EXPECT_TRUE(failure(name).contains("it is not a regular file.")) << name.toStdString();
    EXPECT_TRUE(failure("/dev/full/a").contains("Not a directory."));

    zrk::FileWriter running(path("a"), "trace", loop, nullptr);
    running.append("kept");
    EXPECT_TRUE(failure(path("a")).contains("a run of this program is writing it"));
    running.end();
    EXPECT_EQ(contentOf(path("a")), "kept");
    EXPECT_EQ(QFile::permissions(path("a")) & (QFile::ReadGroup | QFile::ReadOther | QFile::WriteGroup), 0);
    EXPECT_TRUE(QFile::setPermissions(path("a"), QFile::ReadOwner | QFile::WriteOwner | QFile::ReadOther));
    EXPECT_EQ(zrk::recordProblem(path("a")), "");
    EXPECT_EQ(contentOf(path("a")), "kept");
    EXPECT_EQ(failure(path("a")), "");
    EXPECT_EQ(contentOf(path("a")), "");
    EXPECT_FALSE(QFile::permissions(path("a")) & QFile::ReadOther);

    ASSERT_EQ(::link(qPrintable(path("a")), qPrintable(path("input"))), 0);
    EXPECT_TRUE(failure(path("a")).contains("cannot be written: the loader reads that file."));
    if (::chown(qPrintable(path("a")), 65534, 65534) == 0) { // root's tests only
        EXPECT_TRUE(zrk::recordProblem(path("a")) == "it belongs to another account");
    }

    // The window's console is written at once.
    EXPECT_EQ(zrk::replaceRecord(path("link"), "x"), "it is a link");
    EXPECT_EQ(zrk::replaceRecord(path("new"), "text"), "");
    EXPECT_EQ(zrk::replaceRecord(path("new"), "other"), "");
    EXPECT_EQ(contentOf(path("new")), "other");
    EXPECT_FALSE(QFile::permissions(path("new")) & (QFile::ReadGroup | QFile::ReadOther));
    EXPECT_EQ(zrk::replaceRecord(path("none/new"), "text"), "No such file or directory");
    EXPECT_EQ(QDir(folder.path()).entryList(QDir::Files | QDir::Hidden).filter("zrk-save").size(), 0);
}
#endif

#ifndef _WIN32
/// Several runs write lines that are longer than a pipe's atomic ones.
TEST(SharedRecord, HasWholeLinesOfAll) {
    const QTemporaryDir folder;
    const QString path = folder.filePath("report");
    constexpr int kRuns = 4;
    constexpr int kLines = 20;
    std::vector<std::thread> runs;
    runs.reserve(kRuns);
    for (int run = 0; run < kRuns; ++run)
        runs.emplace_back([&path, run] {
            for (int i = 0; i < kLines; ++i)
                EXPECT_EQ(zrk::appendToShared(path, QByteArray(20'000, static_cast<char>('a' + run)) + '\n'),
                          "");
        });
    for (std::thread& run : runs)
        run.join();
    const QByteArrayList lines = contentOf(path).trimmed().split('\n');
    EXPECT_EQ(lines.size(), kRuns * kLines);
    for (const QByteArray& line : lines)
        EXPECT_EQ(line, QByteArray(20'000, line.at(0)));
    EXPECT_EQ(QFile::permissions(path) & (QFile::ReadGroup | QFile::ReadOther), QFile::Permissions());
}

TEST(SharedRecord, LeavesNoPartOfALineOnAFullDisk) {
    const QTemporaryDir folder;
    const QString path = folder.filePath("report");
    EXPECT_EQ(zrk::appendToShared(path, "first\n"), "");
    rlimit before{};
    getrlimit(RLIMIT_FSIZE, &before);
    const auto handler = std::signal(SIGXFSZ, SIG_IGN);
    const rlimit full{10, before.rlim_max};
    setrlimit(RLIMIT_FSIZE, &full);
    EXPECT_EQ(zrk::appendToShared(path, QByteArray(100, 'x') + '\n'), "No space left on device");
    setrlimit(RLIMIT_FSIZE, &before);
    (void)std::signal(SIGXFSZ, handler);
    EXPECT_EQ(contentOf(path), "first\n");
}
#endif

} // namespace
