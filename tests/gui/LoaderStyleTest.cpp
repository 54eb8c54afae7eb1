#include "app/LoaderStyle.h"

#include <QImage>
#include <QPainter>
#include <QStyleOption>
#include <QTreeWidget>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>

namespace {

/// The greatest difference in lightness between the pixels of two pictures.
int greatestDifference(const QImage& a, const QImage& b) {
    int greatest = 0;
    for (int y = 0; y < a.height(); ++y) {
        for (int x = 0; x < a.width(); ++x)
            greatest =
                std::max(greatest, std::abs(a.pixelColor(x, y).lightness() - b.pixelColor(x, y).lightness()));
    }
    return greatest;
}

TEST(LoaderStyle, ShowsTheFocusOfAListAndABoxOnADarkGround) {
    zrk::LoaderStyle style;
    QTreeWidget list;
    list.setStyle(&style);
    QImage without(60, 30, QImage::Format_RGB32);
    without.fill(list.palette().color(QPalette::Window));
    QImage with = without;
    QStyleOptionFrame frame;
    frame.initFrom(&list);
    frame.rect = without.rect();
    frame.frameShape = QFrame::StyledPanel;
    for (QImage* image : {&without, &with}) {
        QPainter painter(image);
        frame.state.setFlag(QStyle::State_HasFocus, image == &with);
        style.drawControl(QStyle::CE_ShapedFrame, &frame, &painter, &list);
    }
    EXPECT_GT(greatestDifference(without, with), 40);

    QStyleOptionButton box;
    box.palette = QPalette(QColor(0x31, 0x31, 0x31));
    box.rect = without.rect();
    box.state = QStyle::State_Enabled | QStyle::State_Off;
    with.fill(box.palette.color(QPalette::Window));
    without = with;
    QPainter painter(&with);
    style.drawPrimitive(QStyle::PE_IndicatorCheckBox, &box, &painter, nullptr);
    EXPECT_GT(greatestDifference(without, with), 60);
}

} // namespace
