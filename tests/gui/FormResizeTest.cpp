#include "app/FormResize.h"

#include "gui/WindowRig.h"

namespace {

using zrk::FormResize;
using zrk::FormSize;

QString sizeText(FormSize size) {
    return QStringLiteral("%1 x %2").arg(size.height).arg(size.width);
}

/// Words what a resize does to the console, or the size to which it snaps back.
QString outcome(const FormResize::Step& step) {
    QStringList parts;
    if (step.place)
        parts += sizeText(step.place->frame) + ", text " + sizeText(step.place->text);
    if (step.snapBack)
        parts += "back to " + sizeText(*step.snapBack);
    return parts.join(" and ");
}

TEST(FormResize, KeepsTheMarginsOfTheFirstResizeAndSnapsBackFromTooSmall) {
    const FormResize::Console console{{3000, 11000}, {2500, 10800}};
    // At its bottom the frame has no margin; all four are then taken again with each resize, so nothing
    // changes its size until the form is higher.
    const FormResize::Console full{{9000, 11000}, {8500, 10800}};
    struct Case {
        FormResize::Console console;
        std::vector<std::pair<FormSize, const char*>> resizes;
    };
    const Case cases[] = {
        {console,
         {{{9000, 12000}, "3000 x 11000, text 2500 x 10800"},
          {{10000, 12500}, "4000 x 11500, text 3500 x 11300"},
          // The text's bottom margin is 6500 and its right margin 1200; the frame's 6000 and 1000.
          {{6500, 1200}, "500 x 200, text 0 x 0"},
          {{6499, 12000}, "back to 6500 x 1200"},
          {{9000, 1199}, "back to 6500 x 1200"},
          {{90000, 120000}, "84000 x 119000, text 83500 x 118800"}, // beyond 16 bits in both directions
          {{0, 0}, "back to 90000 x 120000"}}},
        {full,
         {{{9000, 12000}, "9000 x 11000, text 8500 x 10800"},
          {{9500, 12500}, "9000 x 11000, text 8500 x 10800"},
          {{9700, 12600}, "9200 x 11100, text 8700 x 10900"}}},
        {console, // margins are rounded, the fractions of the form are not
         {{{9000.25, 12000}, "3000.25 x 11000, text 2500.25 x 10800"}, {{0, 0}, "back to 9000 x 12000"}}},
    };
    for (const Case& oneCase : cases) {
        FormResize resize;
        for (const auto& [form, expected] : oneCase.resizes) {
            EXPECT_EQ(outcome(resize.frmLoader_Form_Resize(false, form, oneCase.console)), expected);
            EXPECT_EQ(outcome(resize.frmLoader_Form_Resize(true, {0, 0}, oneCase.console)), "")
                << "minimized";
        }
    }
}

class ResizedWindow : public zrktest::WindowTest {};

TEST_F(ResizedWindow, OnlyTheConsoleFollowsTheWindow) {
    auto* frame = find("fraControl");
    auto* text = find("txtStatus");
    const auto rest = [&] {
        QList<QRect> places;
        for (const QWidget* widget : frame->parentWidget()->findChildren<QWidget*>()) {
            if (widget != frame && !frame->isAncestorOf(widget))
                places += widget->geometry();
        }
        return places;
    };
    const auto panels = [this] { // within the status bar, which is as wide as the window
        QList<QRect> places;
        for (const char* name : {"staStatus_0", "staStatus_1", "staStatus_2", "pgbDownload"})
            places += {find(name)->mapTo(find("staStatus"), QPoint()), find(name)->size()};
        return places;
    };
    const QList<QRect> others = rest();
    const QList<QRect> panels0 = panels();
    const QSize window0 = window.size();
    const QRect frame0 = frame->geometry();
    const QRect text0 = text->geometry();
    for (const QSize change : {QSize(200, 150), QSize(-300, -100), QSize(3000, 2000), QSize(0, 0)}) {
        window.resize(window0 + change);
        EXPECT_EQ(frame->geometry(), QRect(frame0.topLeft(), frame0.size() + change)) << change.width();
        EXPECT_EQ(text->geometry(), QRect(text0.topLeft(), text0.size() + change)) << change.width();
        EXPECT_EQ(rest(), others);
        EXPECT_EQ(panels(), panels0) << change.width();
    }
    loader.controls.staStatus.FirstPanel = QString(300, 'x');
    loader.controls.staStatus.SecondPanel = QString(300, 'x');
    QApplication::processEvents();
    EXPECT_EQ(panels(), panels0);
    // Too low: back to the last good size, and the console fits it.
    window.resize(window0.width(), 100);
    EXPECT_EQ(window.size(), window0);
    EXPECT_EQ(text->geometry(), text0);
    // A user who drags the size keeps it while dragging and not for good.
    window.resize(window0.width(), 100);
    EXPECT_EQ(window.height(), 100);
    EXPECT_TRUE(QTest::qWaitFor([&] { return window.size() == window0; }));
    EXPECT_EQ(text->geometry(), text0);
    // On a screen that is too small for the controls the console shrinks to almost nothing.
    window.fitInto({10, 20, 300, 200});
    EXPECT_EQ(window.frameGeometry().width(), 300);
    EXPECT_EQ(text->height(), 0);
    EXPECT_EQ(window.pos(), QPoint(10, 20));
}

} // namespace
