#include "app/terminal/TerminalPress.h"
#include "app/terminal/TerminalScreen.h"
#include "support/Rig.h"

#include <QFile>
#include <QStandardPaths>

#include <csignal>
#include <functional>
#include <poll.h>
#include <pty.h>
#include <stdexcept>
#include <string>
#include <sys/wait.h>
#include <unistd.h>

// Tests programs of this machine on a pseudo-terminal, in place of those of a board.

namespace {

using Answers = zrk::TerminalScreen::Answers;

constexpr int kPatience = 600'000; // milliseconds; only a fault lasts that long

struct Programs : ::testing::Test {
    QTemporaryDir folder;
    int line = -1;
    pid_t process = -1;
    zrk::TerminalScreen screen{[this](const QByteArray& bytes) {
        if (::write(line, bytes.constData(), static_cast<std::size_t>(bytes.size())) != bytes.size())
            throw std::runtime_error("the program takes no keys");
    }};

    ~Programs() override {
        if (process < 0)
            return;
        ::close(line);
        ::kill(process, SIGKILL);
        ::waitpid(process, nullptr, 0);
    }
    Programs() = default;
    Programs(const Programs&) = delete;
    Programs& operator=(const Programs&) = delete;

    static bool isThere(const char* program) { return !QStandardPaths::findExecutable(program).isEmpty(); }

    /// Runs a command of the shell, in the folder.
    void run(const char* command) {
        winsize size{24, 80, 0, 0};
        process = ::forkpty(&line, nullptr, nullptr, &size);
        if (process != 0)
            return;
        for (const char* setting : {"TERM=xterm-256color", "LANG=C.UTF-8", "LC_ALL=C.UTF-8", "PS1=$ ",
                                    "LESS=", "LS_COLORS=di=01;34:ex=01;32"})
            ::putenv(const_cast<char*>(setting));
        if (::chdir(folder.path().toLocal8Bit().constData()) == 0)
            ::execl("/bin/sh", "sh", "-c", command, nullptr);
        ::_exit(127);
    }

    /// Feeds the screen until that holds or the program has ended.
    bool until(const std::function<bool()>& holds) {
        char bytes[4096];
        while (!holds()) {
            pollfd entry{line, POLLIN, 0};
            const ssize_t count = ::poll(&entry, 1, kPatience) == 1 ? ::read(line, bytes, sizeof bytes) : -1;
            if (count <= 0)
                return holds();
            screen.feed(QByteArray(bytes, static_cast<qsizetype>(count)), Answers::Send);
        }
        return true;
    }
    void untilEnd() {
        (void)until([] { return false; });
    }
    bool untilShows(const QString& text) {
        return until([&] { return shown().contains(text); });
    }

    [[nodiscard]] QString row(int number) const {
        return zrk::textOf(screen.line(screen.gridTop() + number), 0, 1000);
    }
    [[nodiscard]] QString shown() const {
        QString all;
        for (int i = 0; i < screen.size().rows; ++i)
            all += row(i) + '\n';
        return all;
    }
    /// Returns the cell that the text begins with.
    [[nodiscard]] zrk::ScreenCell cellOf(const QString& text) const {
        for (int i = 0; i < screen.size().rows; ++i) {
            if (const auto column = row(i).indexOf(text); column >= 0)
                return screen.line(screen.gridTop() + i)[static_cast<std::size_t>(column)];
        }
        ADD_FAILURE() << text.toStdString() << " is not in\n" << shown().toStdString();
        return {};
    }

    void type(const QString& text) {
        zrk::TerminalPress press;
        press.text = text;
        screen.type(press);
    }
    void press(int key, Qt::KeyboardModifiers modifiers = {}) {
        screen.type(zrk::terminalPress(key, modifiers, {}));
    }
    void write(const char* name, const QByteArray& content) const {
        QFile file(folder.filePath(name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly) && file.write(content) == content.size());
    }
    [[nodiscard]] QByteArray read(const char* name) const {
        QFile file(folder.filePath(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("cannot be read");
    }
};

#define NEEDS(program)                                                                                       \
    if (!isThere(program))                                                                                   \
    GTEST_SKIP() << (program) << " is not installed; packaging/install-dependencies test installs it"

TEST_F(Programs, AShellAColouredListAndAProgressBar) {
    write("run", "");
    QFile::setPermissions(folder.filePath("run"), QFile::ReadOwner | QFile::ExeOwner);
    run("mkdir sub; exec sh -i");
    ASSERT_TRUE(untilShows("$"));
    type("echo \u00E4:$((6*7))");
    press(Qt::Key_Return);
    ASSERT_TRUE(untilShows("\n\u00E4:42"));
    type("ls --color=always");
    press(Qt::Key_Return);
    ASSERT_TRUE(untilShows("\nrun"));
    EXPECT_TRUE(cellOf("sub").bold);
    EXPECT_EQ(cellOf("sub").foreground, 0x729FCFU);
    EXPECT_EQ(cellOf("run  sub").foreground, 0x8AE234U);
    type("for i in 1 2 3; do printf \"\\rat ${i}0 %%\"; done; echo; exit");
    press(Qt::Key_Return);
    untilEnd();
    EXPECT_TRUE(shown().contains("\nat 30 %")) << shown().toStdString();
    EXPECT_FALSE(shown().contains("at 20"));
}

TEST_F(Programs, Vi) {
    NEEDS("vi");
    write("file", "one\ntwo\n");
    run("echo before; exec vi file");
    ASSERT_TRUE(until([this] { return row(0) == "one" && row(20) == "~"; }));
    press(Qt::Key_Down);
    type("Anew \u00E4"); // NOLINT(words): A appends
    press(Qt::Key_Escape);
    ASSERT_TRUE(until([this] { return row(1) == "twonew \u00E4"; }));
    type(":wq");
    press(Qt::Key_Return);
    untilEnd();
    EXPECT_EQ(read("file"), "one\ntwonew \xC3\xA4\n");
    EXPECT_EQ(row(0), "before") << "the screen before is back";
}

TEST_F(Programs, Less) {
    NEEDS("less");
    QByteArray lines;
    for (int i = 1; i <= 100; ++i)
        lines += "line " + QByteArray::number(i) + "\n";
    write("file", lines);
    run("exec less file");
    ASSERT_TRUE(until([this] { return row(22) == "line 23" && row(23).startsWith("file"); }));
    EXPECT_TRUE(cellOf("file").reverse);
    press(Qt::Key_PageDown);
    ASSERT_TRUE(until([this] { return row(0) == "line 24" && row(22) == "line 46"; }));
    press(Qt::Key_Up);
    ASSERT_TRUE(until([this] { return row(0) == "line 23" && row(22) == "line 45"; }));
    type("q");
    untilEnd();
}

TEST_F(Programs, Nano) {
    NEEDS("nano");
    run("exec nano file");
    ASSERT_TRUE(untilShows("^X Exit"));
    EXPECT_TRUE(cellOf("GNU nano").reverse);
    type("some \u20AC");
    press(Qt::Key_Home);
    type("1 ");
    ASSERT_TRUE(until([this] { return row(1) == "1 some \u20AC" || row(2) == "1 some \u20AC"; }));
    screen.type(zrk::terminalPress(Qt::Key_X, Qt::ControlModifier, QStringLiteral("\x18")));
    ASSERT_TRUE(untilShows("Save modified buffer"));
    type("y");
    ASSERT_TRUE(untilShows("File Name to Write"));
    press(Qt::Key_Return);
    untilEnd();
    EXPECT_EQ(read("file"), "1 some \xE2\x82\xAC\n");
}

TEST_F(Programs, Top) {
    NEEDS("top");
    run("exec top -d 600");
    ASSERT_TRUE(until([this] { return row(0).startsWith("top - ") && row(6).contains("PID"); }));
    EXPECT_TRUE(cellOf("PID").reverse);
    type("q");
    untilEnd();
}

} // namespace
