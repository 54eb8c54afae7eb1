#include "cli/Processes.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <fcntl.h>
#include <unistd.h>

namespace {

/// A terminal of the test's own, which a person would sit at.
class Person {
  public:
    Person() : m_master(posix_openpt(O_RDWR | O_NOCTTY)) {
        EXPECT_GE(m_master, 0);
        EXPECT_EQ(grantpt(m_master), 0);
        EXPECT_EQ(unlockpt(m_master), 0);
    }
    ~Person() { close(m_master); }
    Person(const Person&) = delete;
    Person& operator=(const Person&) = delete;

    [[nodiscard]] QString terminal() const { return QString::fromLocal8Bit(ptsname(m_master)); }
    void types(const QByteArray& line) const {
        EXPECT_EQ(write(m_master, line.constData(), static_cast<std::size_t>(line.size())), line.size());
    }

  private:
    int m_master;
};

constexpr const char* kQuestion = "If you cancel now, you have to restart all over!\nAre you sure?";

QStringList loadStep(const BoardProcess& board, const SampleImages& images) {
    return {QStringLiteral("--port"), board.device(), QStringLiteral("--ini"), images.ini(),
            QStringLiteral("load")};
}

TEST(CliInterrupt, EndsTheWaitForTheBoard) {
    const SampleImages images;
    const BoardProcess board({QStringLiteral("--fault"), QStringLiteral("bootid=none")});
    CliRun run(loadStep(board, images));
    ASSERT_TRUE(run.waitForOutput("Waiting for BootID .. "));
    run.interrupt();
    EXPECT_EQ(run.status(), 130);
    EXPECT_TRUE(run.output().contains("cancelled!\n\n--- Cancel download, closing port ---\n"))
        << run.output().toStdString();
}

TEST(CliInterrupt, CountsAsYesWhereNobodyCanBeAsked) {
    const SampleImages images;
    const BoardProcess board({});
    CliRun run(loadStep(board, images));
    ASSERT_TRUE(run.waitForOutput("Sending code .. "));
    run.interrupt();
    EXPECT_EQ(run.status(), 130);
    EXPECT_TRUE(run.error().contains(kQuestion)) << run.error().toStdString();
}

TEST(CliInterrupt, AsksOnTheTerminal) {
    const SampleImages images;
    const struct {
        const char* answer;
        int status;
    } cases[] = {{"n\n", 0}, {"yes\n", 130}};
    for (const auto& oneCase : cases) {
        SCOPED_TRACE(oneCase.answer);
        const BoardProcess board({});
        const Person person;
        CliRun run(loadStep(board, images), person.terminal());
        ASSERT_TRUE(run.waitForOutput("Sending code .. "));
        run.interrupt();
        ASSERT_TRUE(run.waitForError(kQuestion));
        person.types(oneCase.answer);
        EXPECT_EQ(run.status(), oneCase.status) << run.error().toStdString();
    }
}

} // namespace
