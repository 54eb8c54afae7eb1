#include "app/FormResize.h"

#include "app/ConsoleView.h"
#include "gui/WindowRig.h"

#include <QGroupBox>
#include <QTest>

namespace {

using zrk::FormResize;
using zrk::FormSize;

// A form of 9000 by 12000 twips whose frame is 3000 by 11000 and whose text is 2500 by 10800.
constexpr FormSize kForm{9000, 12000};
constexpr FormResize::Console kConsole{{3000, 11000}, {2500, 10800}};

testing::AssertionResult places(const FormResize::Step& step, FormSize frame, FormSize text) {
    if (!step.place || step.snapBack)
        return testing::AssertionFailure() << "does not place the console";
    const FormResize::Console& c = *step.place;
    if (c.frame.height == frame.height && c.frame.width == frame.width && c.text.height == text.height &&
        c.text.width == text.width)
        return testing::AssertionSuccess();
    return testing::AssertionFailure()
           << c.frame.height << " x " << c.frame.width << ", text " << c.text.height << " x " << c.text.width;
}

testing::AssertionResult snapsBackTo(const FormResize::Step& step, FormSize size) {
    const bool right = !step.place && step.snapBack && step.snapBack->height == size.height &&
                       step.snapBack->width == size.width;
    return right ? testing::AssertionSuccess() : testing::AssertionFailure() << "does not snap back there";
}

TEST(FormResize, KeepsTheMarginsOfTheFirstResizeAndSnapsBackFromTooSmall) {
    FormResize resize;
    EXPECT_TRUE(places(resize.frmLoader_Form_Resize(false, kForm, kConsole), {3000, 11000}, {2500, 10800}));
    EXPECT_TRUE(
        places(resize.frmLoader_Form_Resize(false, {10000, 12500}, kConsole), {4000, 11500}, {3500, 11300}));
    const FormResize::Step minimized = resize.frmLoader_Form_Resize(true, {0, 0}, kConsole);
    EXPECT_FALSE(minimized.place || minimized.snapBack);
    // The text's bottom margin is 6500 and its right margin 1200; the frame's 6000 and 1000.
    EXPECT_TRUE(places(resize.frmLoader_Form_Resize(false, {6500, 1200}, kConsole), {500, 200}, {0, 0}));
    EXPECT_TRUE(snapsBackTo(resize.frmLoader_Form_Resize(false, {6499, 12000}, kConsole), {6500, 1200}));
    EXPECT_TRUE(snapsBackTo(resize.frmLoader_Form_Resize(false, {9000, 1199}, kConsole), {6500, 1200}));
    EXPECT_TRUE(snapsBackTo(resize.frmLoader_Form_Resize(false, {5000, 12000}, kConsole), {6500, 1200}));
    // Beyond 16 bits in both directions.
    EXPECT_TRUE(places(resize.frmLoader_Form_Resize(false, {90000, 120000}, kConsole), {84000, 119000},
                       {83500, 118800}));
    EXPECT_TRUE(snapsBackTo(resize.frmLoader_Form_Resize(false, {0, 0}, kConsole), {90000, 120000}));
}

TEST(FormResize, TakesTheMarginsAgainWhileTheFrameReachesTheBottom) {
    FormResize resize;
    const FormResize::Console full{{9000, 11000}, {8500, 10800}};
    EXPECT_TRUE(places(resize.frmLoader_Form_Resize(false, kForm, full), {9000, 11000}, {8500, 10800}));
    // All four are taken again, so nothing changes its size until the bottom margin is no longer 0.
    EXPECT_TRUE(
        places(resize.frmLoader_Form_Resize(false, {9500, 12500}, full), {9000, 11000}, {8500, 10800}));
    EXPECT_TRUE(
        places(resize.frmLoader_Form_Resize(false, {9700, 12600}, full), {9200, 11100}, {8700, 10900}));
}

TEST(FormResize, MarginsAreRoundedAndTheFractionsOfTheFormAreNot) {
    FormResize resize;
    (void)resize.frmLoader_Form_Resize(false, {9000.25, 12000}, kConsole);
    EXPECT_TRUE(places(resize.frmLoader_Form_Resize(false, {9000.25, 12000}, kConsole), {3000.25, 11000},
                       {2500.25, 10800}));
    EXPECT_TRUE(snapsBackTo(resize.frmLoader_Form_Resize(false, {0, 0}, kConsole), {9000, 12000}));
}

class ResizedWindow : public zrktest::WindowTest {};

TEST_F(ResizedWindow, OnlyTheConsoleFollowsTheWindow) {
    auto* frame = find<QGroupBox>(QStringLiteral("fraControl"));
    auto* text = find<zrk::ConsoleView>(QStringLiteral("txtStatus"));
    QList<QRect> others;
    const auto rest = [&] {
        QList<QRect> places;
        for (const QWidget* widget : frame->parentWidget()->findChildren<QWidget*>()) {
            if (widget != frame && !frame->isAncestorOf(widget))
                places += widget->geometry();
        }
        return places;
    };
    others = rest();
    const QSize window0 = window.size();
    const QRect frame0 = frame->geometry();
    const QRect text0 = text->geometry();
    for (const QSize change : {QSize(200, 150), QSize(-300, -100), QSize(3000, 2000), QSize(0, 0)}) {
        window.resize(window0 + change);
        EXPECT_EQ(frame->geometry(), QRect(frame0.topLeft(), frame0.size() + change)) << change.width();
        EXPECT_EQ(text->geometry(), QRect(text0.topLeft(), text0.size() + change)) << change.width();
        EXPECT_EQ(rest(), others);
    }
    // Too low: back to the last good size, and the console fits it.
    window.resize(window0.width(), 100);
    EXPECT_EQ(window.size(), window0);
    EXPECT_EQ(text->geometry(), text0);
    // Who holds on to the size, as a drag does, has it for that long and not for good.
    window.resize(window0.width(), 100);
    EXPECT_EQ(window.height(), 100);
    EXPECT_TRUE(QTest::qWaitFor([&] { return window.size() == window0; }));
    EXPECT_EQ(text->geometry(), text0);
    // On a screen that is too small for the controls the console is as good as gone, and no more.
    window.fitInto({10, 20, 300, 200});
    EXPECT_EQ(window.frameGeometry().width(), 300);
    EXPECT_EQ(text->height(), 0);
    EXPECT_EQ(window.pos(), QPoint(10, 20));
}

} // namespace
