#include "gui/WindowRig.h"

#include <QAbstractItemView>
#include <QComboBox>
#include <QWheelEvent>

namespace {

using namespace zrktest;

TEST_F(WindowTest, TheOpenPortListFollowsAdaptersThatComeAndGo) {
    auto* ports = find<QComboBox>(QStringLiteral("cmbComPort"));
    const auto told = [&](int seconds) {
        loop.runFor(std::chrono::milliseconds(1000 * seconds + 1));
        return ports->itemData(1, Qt::ToolTipRole).toString().replace('\n', '|').toStdString();
    };
    ports->showPopup();
    EXPECT_EQ(told(0), loader.port.deviceName(2).toStdString()) << "a device that no catalog knows";
    zrk::PortEntry adapter{"/dev/ttyUSB1", "/by-id/usb-X", "FT232R", "FTDI",    "A5",  "0403:6001",
                           {2, 3},         true,           false,    "dialout", false, "minicom (4711)"};
    catalog.entries = {adapter};
    EXPECT_EQ(told(1),
              "/by-id/usb-X|COM2, COM3, /dev/ttyUSB1|FT232R, FTDI|serial number A5, USB 0403:6001|"
              "in use by minicom (4711)|no permission: add yourself to the group dialout and log in again");
    EXPECT_EQ(ports->itemText(1), "COM2:");
    // The open list shows the device beside it, and a missing one grey.
    const auto drawn = [ports](int row) {
        const QRect place = ports->view()->visualRect(ports->model()->index(row, 0));
        const QImage image = ports->view()->viewport()->grab(place).toImage();
        int darkest = 255;
        for (int x = image.width() / 3; x < image.width(); ++x)
            for (int y = 0; y < image.height(); ++y)
                darkest = std::min(darkest, image.pixelColor(x, y).lightness());
        return darkest;
    };
    EXPECT_LT(drawn(1), 80) << "there";
    EXPECT_GT(drawn(4), 80) << "a device that no catalog knows";
    EXPECT_LT(drawn(4), 220);
    EXPECT_EQ(ports->itemData(1, Qt::AccessibleDescriptionRole), "/dev/ttyUSB1 (FT232R A5)");
    catalog.entries[0].isThere = false;
    EXPECT_NE(told(1).find("|not there: plug the adapter in"), std::string::npos) << told(0);
    // A closed list rests; an open one shows the machine's present ports.
    ports->view()->window()->hide();
    catalog.entries = {adapter};
    EXPECT_NE(told(3).find("|not there"), std::string::npos) << told(0);
    ports->showPopup();
    EXPECT_EQ(told(0).find("|not there"), std::string::npos) << told(0);
    ports->hidePopup();
    QWheelEvent turn(QPointF(5, 5), ports->mapToGlobal(QPointF(5, 5)), {}, {0, -120}, Qt::NoButton,
                     Qt::NoModifier, Qt::NoScrollPhase, false);
    QApplication::sendEvent(ports, &turn);
    EXPECT_EQ(ports->currentIndex(), 0) << "a wheel on its way over the list";
    for (const bool open : {true, false}) {
        loader.terminal.cmdTerminal_Click();
        if (!open)
            loader.portControl.cmdCancel_Click();
        QHelpEvent hovers(QEvent::ToolTip, QPoint(5, 5), ports->mapToGlobal(QPoint(5, 5)));
        QApplication::sendEvent(ports, &hovers);
        EXPECT_EQ(ports->toolTip().contains("Close the port"), open) << "why it is grey";
    }
}

} // namespace
