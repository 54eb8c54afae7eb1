#include "app/ConsoleLog.h"
#include "app/ConsoleSaving.h"
#include "app/FileRecording.h"
#include "gui/WindowRig.h"
#include "machine/TracedPorts.h"

#include <QRegularExpression>

#ifndef _WIN32
#include <csignal>
#include <sys/resource.h>
#endif

namespace {

using namespace zrktest;

class Records : public WindowTest {};

/// Records over the scripted port of the fixture, which the window's own loader does not open.
TEST_F(Records, RecordsATraceBetweenTwoClicks) {
    zrk::TracedPorts traced(loop, port);
    zrk::Loader recorded({loop, traced, boxes, fileDialog, waitDialog}, folder.path());
    recorded.startUp.prepare({folder.path(), "loader", 0, 7, 34});
    auto* entry = find<QAction>("mnuRecordTrace");
    zrk::recordTrace(*entry, traced, recorded);
    trigger("mnuRecordTrace");
    EXPECT_FALSE(entry->isChecked()) << "the dialog was cancelled";
    EXPECT_TRUE(fileDialog.requests[0].isToBeWritten);
    EXPECT_TRUE(QRegularExpression("^board-20\\d\\d-\\d\\d-\\d\\d-\\d{6}\\.trace$")
                    .match(fileDialog.requests[0].name)
                    .hasMatch());

    fileDialog.choice = folder.filePath("bench.trace");
    trigger("mnuRecordTrace");
    EXPECT_TRUE(entry->isChecked());
    EXPECT_EQ(entry->text(), "Record &trace to bench.trace");
    recorded.port.OpenComPort();
    recorded.port.Output("hello");
    trigger("mnuRecordTrace");
    EXPECT_FALSE(entry->isChecked());
    QFile file(fileDialog.choice);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_TRUE(file.readAll().contains(" > 68 65 6c 6c 6f "));

    fileDialog.choice = "/nonexistent/bench.trace";
    trigger("mnuRecordTrace");
    EXPECT_FALSE(entry->isChecked());
    loop.runFor(1ms);
    EXPECT_EQ(boxes.shown.size(), 1);
    EXPECT_TRUE(boxes.shown.value(0).contains("/nonexistent/bench.trace cannot be written"));
}

TEST_F(Records, LogsTheConsoleBetweenTwoClicks) {
    zrk::ConsoleLog log(loop, loader.controls.txtStatus);
    auto* entry = find<QAction>("mnuLogToFile");
    auto* stamps = find<QAction>("mnuLogTimes");
    zrk::logToFile(*entry, *stamps, log, loader, folder.filePath("window.conf"));
    EXPECT_FALSE(stamps->isChecked());
    loader.console.PrintPlain("before");
    fileDialog.choice = folder.filePath("bench.log");
    trigger("mnuLogToFile");
    EXPECT_EQ(entry->text(), "Log to &file bench.log");
    loader.state.OperationActive = true;
    EXPECT_TRUE(entry->isEnabled()) << "to end it takes no dialog";
    loader.state.OperationActive = false;
    loader.console.PrintPlain(QStringLiteral("printed \u00e4\r\n"));
    loader.terminal.ShowReceived(QStringLiteral("\b\u001b[0;32mboard\u00c3\u00a4\b\r\n"));
    stamps->trigger();
    loader.console.PrintPlain("at");
    trigger("mnuLogToFile");
    loader.console.PrintPlain("behind");
    QFile file(fileDialog.choice);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QByteArray logged = file.readAll();
    const QByteArray plain = "printed \xC3\xA4\r\x1b[0;32mboard\xC3\r\n";
    EXPECT_TRUE(logged.startsWith(plain)) << logged.constData();
    EXPECT_EQ(logged.size(), plain.size() + QByteArray("2026-03-01 14:05:06.789 at").size());
    EXPECT_TRUE(
        QSettings(folder.filePath("window.conf"), QSettings::IniFormat).value("logTimeStamps").toBool());

    // A protocol's answers are bytes of the board, too.
    fileDialog.choice = folder.filePath("answers.log");
    stamps->trigger();
    trigger("mnuLogToFile");
    loader.console.PrintAnswer(QStringLiteral("\u00ff"));
    loader.console.PrintAnswer(QString(QChar(0)));
    trigger("mnuLogToFile");
    QFile answers(fileDialog.choice);
    ASSERT_TRUE(answers.open(QIODevice::ReadOnly));
    EXPECT_EQ(answers.readAll(), QByteArray("\xFF\0", 2));

    // A failure leaves the entry ready for the next try.
    fileDialog.choice = "/nonexistent/bench.log";
    trigger("mnuLogToFile");
    loop.runFor(1ms);
    EXPECT_TRUE(boxes.shown.value(0).contains("/nonexistent/bench.log cannot be written"));
    EXPECT_FALSE(entry->isChecked());
    fileDialog.choice = folder.filePath("second.log");
    trigger("mnuLogToFile");
    EXPECT_TRUE(entry->isChecked());
    trigger("mnuLogToFile");
#ifndef _WIN32
    fileDialog.choice = folder.filePath("full.log");
    trigger("mnuLogToFile");
    EXPECT_EQ(loader.state.Remark.text, "Logging what comes into the console to " + fileDialog.choice);
    rlimit before{};
    getrlimit(RLIMIT_FSIZE, &before);
    const rlimit none{0, before.rlim_max};
    const auto ignored = std::signal(SIGXFSZ, SIG_IGN);
    setrlimit(RLIMIT_FSIZE, &none);
    loader.console.PrintPlain("x");
    trigger("mnuLogToFile");
    setrlimit(RLIMIT_FSIZE, &before);
    std::signal(SIGXFSZ, ignored);
    EXPECT_EQ(loader.state.Remark.text, "") << "it does not log any more";
    loop.runFor(1ms);
    EXPECT_EQ(boxes.shown.size(), 2);
#endif
    loader.state.OperationActive = true;
    EXPECT_FALSE(entry->isEnabled());
}

TEST_F(Records, NeverReplaceAFileThatIsReadOrWritten) {
    fill(1);
    zrk::ConsoleLog log(loop, loader.controls.txtStatus);
    auto* entry = find<QAction>("mnuLogToFile");
    zrk::logToFile(*entry, *find<QAction>("mnuLogTimes"), log, loader, folder.filePath("window.conf"));
    fileDialog.choice = folder.filePath("slot1.bin");
    trigger("mnuLogToFile");
    loop.runFor(1ms);
    zrk::saveConsole(loader);
    ASSERT_EQ(boxes.shown.size(), 2);
    for (const QString& box : boxes.shown)
        EXPECT_TRUE(box.contains("slot1.bin") && box.contains("the loader reads that file"))
            << box.toStdString();
    fileDialog.choice = folder.filePath("a.log");
    trigger("mnuLogToFile");
    zrk::saveConsole(loader);
    EXPECT_TRUE(boxes.shown.value(2).contains("a.log") || QSysInfo::productType() == "windows");
    trigger("mnuLogToFile");
    zrk::saveConsole(loader);
    EXPECT_EQ(loader.state.Remark.text, "The console has been saved to " + fileDialog.choice);
}

TEST_F(Records, ARecordThatFailsDuringAnOperationDoesNotDelayIt) {
    QAction entry;
    zrk::FileWriter::Told fail;
    zrk::Recording recording;
    recording.start = [&fail](const QString&, zrk::FileWriter::Told failed) { fail = std::move(failed); };
    recording.stop = [&fail] { fail("The disk is full."); };
    recording.ended = "It is complete.";
    new zrk::FileRecording(entry, recording, loader);
    fileDialog.choice = folder.filePath("a");
    entry.trigger();
    loader.state.OperationActive = true;
    fail("The disk is full.");
    loop.runFor(1ms);
    EXPECT_TRUE(boxes.shown.isEmpty());
    EXPECT_TRUE(loader.controls.txtStatus.text().endsWith("--- The disk is full. ---\r\n"));

    loader.state.OperationActive = false;
    entry.trigger();
    entry.trigger(); // ends it, with its last bytes unwritten
    loop.runFor(1ms);
    EXPECT_EQ(boxes.shown.size(), 1);
    EXPECT_NE(loader.state.Remark.text, "It is complete.");
    EXPECT_FALSE(entry.isChecked());
}

} // namespace
