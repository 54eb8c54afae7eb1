#include "machine/LogFile.h"
#include "machine/QtEventLoop.h"
#include "platform/RuntimeFailure.h"

#include <QFile>
#include <QStringList>
#include <QTemporaryDir>
#include <QTimeZone>

#include <gtest/gtest.h>

#ifndef _WIN32
#include <csignal>
#include <sys/resource.h>
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
    log.end();
    log.append("too late");
    EXPECT_EQ(contentOf(folder.filePath("a.log")),
              "not yet\r\nhalf\r\n\n2026-03-01 14:05:06.800 \xC3\xA4 a line goes on\r"
              "2026-03-01 14:05:07.800 over");
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
    file.append("end");
    file.end();
    EXPECT_TRUE(contentOf(folder.filePath("a")) == piece.repeated(50) + "end");
}

#ifndef _WIN32
TEST(FileWriter, AFullDiskIsToldOnceAndEndsTheFileOnly) {
    zrk::QtEventLoop loop;
    QStringList told;
    zrk::FileWriter file("/dev/full", "log", loop, [&told](const QString& why) { told += why; });
    file.append("line\n");
    while (told.isEmpty())
        loop.wait();
    file.append("another\n");
    file.end();
    EXPECT_EQ(told, QStringList("The log /dev/full cannot be written: No space left on device. The log ends "
                                "here, the operation does not; make room or choose another file and start a "
                                "new log."));
    // Most disks fill up in the middle of a write.
    const QTemporaryDir folder;
    const QString path = folder.filePath("a");
    rlimit before{};
    getrlimit(RLIMIT_FSIZE, &before);
    const rlimit small{1000, before.rlim_max};
    setrlimit(RLIMIT_FSIZE, &small);
    const auto ignored = std::signal(SIGXFSZ, SIG_IGN);
    told.clear();
    zrk::FileWriter limited(path, "log", loop, [&told](const QString& why) { told += why; });
    limited.append(QByteArray("a line of 20 bytes.\n").repeated(40) + QByteArray(300, 'x') + "\n");
    limited.end();
    setrlimit(RLIMIT_FSIZE, &before);
    std::signal(SIGXFSZ, ignored);
    EXPECT_TRUE(told.join("").contains("cannot be written: File too large.")) << told.join("").toStdString();
    EXPECT_EQ(contentOf(path).size(), 800);
    EXPECT_THROW(zrk::FileWriter("/dev/full/a", "log", loop, nullptr), zrk::RuntimeFailure);
}
#endif

} // namespace
