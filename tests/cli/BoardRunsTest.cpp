#include "cli/BoardRuns.h"

#include "cli/FullPipe.h"
#include "cli/Interrupts.h"
#include "cli/Options.h"
#include "cli/OutputStreams.h"
#include "cli/Printer.h"
#include "loader/ThisProgram.h"
#include "machine/Pty.h"

#include <QCoreApplication>

#include <gtest/gtest.h>

#include <csignal>
#include <pthread.h>

namespace {

/// A limit from which on new threads of this process get no stacks.
class NoMoreThreads {
  public:
    NoMoreThreads() {
        pthread_attr_t none{};
        pthread_getattr_default_np(&m_before);
        pthread_attr_init(&none);
        pthread_attr_setstacksize(&none, std::size_t{1} << 50);
        pthread_setattr_default_np(&none);
        pthread_attr_destroy(&none);
    }
    ~NoMoreThreads() {
        pthread_setattr_default_np(&m_before);
        pthread_attr_destroy(&m_before);
    }
    NoMoreThreads(const NoMoreThreads&) = delete;
    NoMoreThreads& operator=(const NoMoreThreads&) = delete;

  private:
    pthread_attr_t m_before{};
};

TEST(BoardRuns, WithoutAThreadFailByThemselves) {
    int argc = 1;
    char name[] = "zrk-loader-cli";
    char* argv[] = {name, nullptr};
    const QCoreApplication app(argc, argv);
    std::signal(SIGPIPE, SIG_IGN); // at the end the pipes are destroyed before their writers
    sigset_t before{};
    pthread_sigmask(SIG_BLOCK, nullptr, &before);
    zrk::test::Pty first;
    zrk::test::Pty second;
    const QString one = "--port=" + first.device();
    const QString other = "--port=" + second.device();
    const struct {
        QStringList arguments;
        int status = 0;
        int messages = 0;
        const char* message = "";
    } runs[] = {
        {{one, other}, 1, 2, "No thread could be started for this board: "},
        {{"--com=1=" + first.device()}, 3, 1, "): resource temporarily unavailable. End other programs"},
    };
    for (const auto& run : runs) {
        SCOPED_TRACE(run.message);
        FullPipe output;
        FullPipe error;
        zrk::OutputStreams streams(false, {output.writingEnd(), error.writingEnd()});
        zrk::Interrupts interrupts;
        const auto options =
            zrk::parseCommandLine(QStringList{name, "start"} + run.arguments, "1", [](const QByteArray&) {});
        ASSERT_TRUE(options);
        zrk::Printer printer(options->style, streams);
        const NoMoreThreads none;
        EXPECT_EQ(zrk::runBoards(*options, zrk::programFacts(), printer, interrupts), run.status);
        streams.err("\nthe end\n");
        const QByteArray text = error.readUntil("\nthe end\n");
        EXPECT_EQ(text.count(run.message), run.messages) << text.toStdString();
        EXPECT_FALSE(first.hasReceived() || second.hasReceived());
    }
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
}

} // namespace
