#include "app/ConsoleSearch.h"
#include "app/ConsoleTools.h"
#include "app/terminal/ScreenView.h"
#include "gui/ShownConsole.h"

#include <QApplication>
#include <QEventLoop>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QScrollBar>
#include <QTest>
#include <QTextBlock>
#include <QVBoxLayout>

#include <gtest/gtest.h>

#include <functional>

namespace {

using zrktest::ShownConsole;

/// A view with more text than it has room for.
struct Reading : ShownConsole, ::testing::Test {
    Reading() {
        view.resize(400, 120);
        view.show();
        say("line" + QByteArray("\r\n").repeated(100));
        QObject::connect(&view, &zrk::ConsoleView::holdChanged, [this](bool held, bool more) {
            state = more ? "more" : held ? "held" : "follows";
        });
    }
    [[nodiscard]] bool atEnd() const { return bar.value() == bar.maximum(); }
    void expectStands(const std::function<void()>& release) {
        const int before = bar.value();
        say("new\r\n");
        EXPECT_EQ(bar.value(), before);
        EXPECT_EQ(state, "more");
        release();
        EXPECT_TRUE(atEnd());
        EXPECT_EQ(state, "follows");
        say("newer\r\n");
        EXPECT_TRUE(atEnd());
    }

    QScrollBar& bar = *view.verticalScrollBar();
    QString state = "follows";
};

TEST_F(Reading, TheEndStaysInSightAndASelectionLasts) {
    EXPECT_GT(bar.maximum(), 50);
    EXPECT_TRUE(atEnd());
    QTextCursor selection(view.document());
    selection.setPosition(view.document()->characterCount() - 3);
    selection.movePosition(QTextCursor::Start, QTextCursor::KeepAnchor);
    view.setTextCursor(selection);
    bar.setValue(bar.maximum());
    say("new");
    EXPECT_TRUE(view.textCursor().selectedText().startsWith("line"));
    EXPECT_TRUE(atEnd());
    selection.clearSelection();
    view.setTextCursor(selection);
    bar.setValue(bar.maximum());
    say("new");
    EXPECT_TRUE(view.textCursor().atEnd());
    const QFontMetrics metrics(view.font());
    EXPECT_EQ(metrics.horizontalAdvance("iii"), metrics.horizontalAdvance("WWW"));
}

TEST_F(Reading, StandsStillWhileHeldScrolledUpOrPressedAndGoesBackToTheEnd) {
    const auto press = [this](Qt::Key key) { QTest::keyClick(&view, key); };
    view.setHeld(true);
    expectStands([&] { press(Qt::Key_End); });
    press(Qt::Key_ScrollLock);
    expectStands([&] { press(Qt::Key_ScrollLock); });
    view.selectAll();
    bar.setValue(bar.value() - 5);
    EXPECT_EQ(state, "held");
    expectStands([&] { press(Qt::Key_Return); });
    bar.setValue(0);
    expectStands([&] { bar.setValue(bar.maximum()); });

    QTest::mousePress(view.viewport(), Qt::LeftButton, {}, view.viewport()->rect().bottomRight());
    EXPECT_TRUE(view.textCursor().atEnd());
    const int before = bar.value();
    const int pressedAt = view.textCursor().anchor();
    say("new\r\n");
    EXPECT_EQ(bar.value(), before);
    EXPECT_EQ(view.textCursor().anchor(), pressedAt) << "where a drag begins";
    EXPECT_TRUE(state.contains("more")) << state.toStdString();
    QTest::mouseRelease(view.viewport(), Qt::LeftButton);
    EXPECT_TRUE(atEnd());
    bar.setValue(0);
    EXPECT_EQ(state, "held") << "nothing has come since";
    view.clearView();
    EXPECT_FALSE(view.isHeld());

    // The menu of the other button takes its release.
    QTest::mousePress(view.viewport(), Qt::RightButton);
    say(QByteArray("x\r\n").repeated(100));
    EXPECT_TRUE(atEnd());
    QTest::mouseRelease(view.viewport(), Qt::RightButton);
}

TEST_F(Reading, AnotherWidthOrAClearGoesThroughNothingThatIsOutOfSight) {
    say(QByteArray("123456789 ").repeated(30) + "\r\n");
    const QTextBlock longLine = view.document()->lastBlock().previous();
    QApplication::processEvents();
    say(QByteArray("x\r\n").repeated(100) + QByteArray(300, 'x'));
    const auto rows = [&] { return std::pair(longLine.lineCount(), longLine.layout()->lineAt(0).width()); };
    const auto room = [&] { return view.viewport()->width() - 2 * view.document()->documentMargin(); };
    const auto [before, width] = rows();
    EXPECT_EQ(width, room());
    view.resize(250, 120);
    QApplication::processEvents();
    EXPECT_EQ(rows(), std::pair(before, width));
    const int range = bar.maximum();
    bar.setValue(longLine.firstLineNumber());
    QApplication::processEvents();
    EXPECT_GT(longLine.lineCount(), before);
    EXPECT_EQ(bar.maximum() - range, longLine.lineCount() - before);
    EXPECT_EQ(longLine.layout()->lineAt(0).width(), room());
    view.setHeld(false);
    for (const int wide : {300, 200, 280}) { // the end stays in sight
        view.resize(wide, 120);
        QApplication::processEvents();
        EXPECT_TRUE(atEnd());
        EXPECT_TRUE(view.viewport()->rect().contains(view.cursorRect())) << wide;
        EXPECT_EQ(view.horizontalScrollBar()->maximum(), 0);
        EXPECT_EQ(view.document()->documentLayout()->frameBoundingRect(nullptr).width(),
                  view.viewport()->width())
            << "within which a selection is painted";
    }

    say(QByteArray("\r\n").repeated(50'000));
    const QPointer<QTextDocument> old = view.document();
    const qreal tabStop = view.tabStopDistance();
    view.clearView();
    EXPECT_FALSE(old.isNull()) << "it takes its time";
    while (!old.isNull())
        QApplication::processEvents();
    EXPECT_EQ(view.tabStopDistance(), tabStop);
    EXPECT_EQ(view.document()->defaultFont(), view.font());
    say("x\ty");
    EXPECT_TRUE(atEnd());
    EXPECT_EQ(copied(), "x\ty");
}

TEST_F(Reading, ASearchEndsWhenItsTextIsGone) {
    QGroupBox frame;
    QVBoxLayout inFrame(&frame);
    auto* shown = new zrk::ConsoleView(&frame);
    inFrame.addWidget(shown);
    zrk::ScreenView screen(&frame);
    screen.hide();
    zrk::ConsoleTools tools({shown, &screen}, &frame, [] {});
    shown->showAnew(QStringLiteral("x\r\n").repeated(100'000));
    auto* txtFind = frame.findChild<QLineEdit*>("txtFind");
    ASSERT_NE(txtFind, nullptr);
    txtFind->setText("absent");
    QTest::keyClick(txtFind, Qt::Key_Return);
    QApplication::processEvents();
    shown->clearView();
    QApplication::processEvents();
    EXPECT_TRUE(frame.findChild<QLabel*>("lblFind")->isHidden());
}

TEST_F(Reading, KeysThatLeadBackAreNotForTheBoardAndOthersAre) {
    view.setKeysGoToBoard([] { return true; });
    QString typed;
    QObject::connect(&view, &zrk::ConsoleView::typed, [&](int character) { typed += QChar(character); });
    view.setHeld(true);
    QTest::keyClick(&view, Qt::Key_X);
    QTest::keyClick(&view, Qt::Key_Return);
    EXPECT_TRUE(view.isHeld()) << "what was stopped with intent";
    QTest::keyClick(&view, Qt::Key_End);
    EXPECT_FALSE(view.isHeld());
    for (const auto key : {Qt::Key_Y, Qt::Key_Return, Qt::Key_Enter}) {
        QTest::keyClick(&view, Qt::Key_PageUp, Qt::ShiftModifier);
        EXPECT_TRUE(view.isHeld());
        QTest::keyClick(&view, key);
        EXPECT_FALSE(view.isHeld()) << "a user who types wants to see it";
    }
    EXPECT_EQ(typed, "x\ry\r\r");
    view.setKeysGoToBoard([] { return false; });
    view.setHeld(true);
    QTest::keyClick(&view, Qt::Key_Return);
    EXPECT_FALSE(view.isHeld());
}

TEST_F(Reading, FindsInBothDirectionsAroundTheEndsAndClearsTheView) {
    say("Boot one\r\n" + QByteArray("x\r\n").repeated(5000) + "boot two boot\r\n");
    zrk::ConsoleSearch search(&view);
    QEventLoop untilAnswered;
    QStringList answers;
    const auto answer = [&](const QString& wanted) {
        answers += wanted;
        untilAnswered.quit();
    };
    QObject::connect(&search, &zrk::ConsoleSearch::found, [&](const QTextCursor& found) {
        view.showFound(found);
        answer(QString("%1 at %2").arg(found.selectedText()).arg(found.positionInBlock()));
    });
    QObject::connect(&search, &zrk::ConsoleSearch::notFound, [&] { answer("none"); });
    const auto find = [&](const QString& wanted, zrk::ConsoleSearch::Direction direction) {
        search.start(wanted, direction);
        untilAnswered.exec();
    };
    using enum zrk::ConsoleSearch::Direction;
    find("boot", Forward);
    EXPECT_TRUE(view.isHeld());
    for (const auto direction : {Forward, Forward, Forward, Backward, Backward})
        find("boot", direction);
    find("absent", Forward);
    EXPECT_EQ(answers.join(", "), "Boot at 4, boot at 4, boot at 13, Boot at 4, boot at 13, boot at 4, none");
    view.clearView();
    EXPECT_EQ(view.toPlainText(), "");
    say("on");
    EXPECT_EQ(view.toPlainText(), "on");
}

} // namespace
