#include "cli/BoardNames.h"

#include "cli/UsageError.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

using zrk::readNamedPort;

TEST(BoardNames, TellLabelsAndDevicesApart) {
    const QTemporaryDir folder;
    const QString before = QDir::currentPath();
    ASSERT_TRUE(QDir::setCurrent(folder.path()));
    QFile file("a=b");
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    const struct {
        const char* value;
        const char* label;
        const char* device;
    } ports[] = {
        {"left-1=/dev/ttyUSB0", "left-1", "/dev/ttyUSB0"},
        {"/dev/x=y", "", "/dev/x=y"},
        {"COM3=COM14", "COM3", "COM14"},
        {"tcp:[::1]:4001", "", "tcp:[::1]:4001"},
        {"b=tcp:host:1", "b", "tcp:host:1"},
        {"a=b", "", "a=b"},
        {"tcp:a=b:1", "", "tcp:a=b:1"},
        {"b=c=d", "b", "c=d"},
    };
    for (const auto& port : ports) {
        const auto read = readNamedPort(port.value);
        EXPECT_EQ(read.label, port.label) << port.value;
        EXPECT_EQ(read.device, port.device) << port.value;
    }
    for (const QString& value : {QString("no good=x"), QString("=x"), QString("b="), QString(33, 'a') + "=x"})
        EXPECT_THROW((void)readNamedPort(value), zrk::UsageError) << value.toStdString();
    ASSERT_TRUE(QDir::setCurrent(before));
}

TEST(BoardNames, AreShortAndUniqueInARun) {
    const QString byId = "/dev/serial/by-id/usb-FTDI_FT232R_USB_UART_A50285BI-if00-port0";
    const struct {
        QList<zrk::NamedPort> ports;
        const char* names = "";
    } runs[] = {
        {{{"b1", byId}, {"", "/dev/ttyUSB0"}}, "b1 ttyUSB0"},
        {{{"", byId}, {"", "tcp:shelf-2:4001"}}, "A50285BI tcp_shelf-2_4001"},
        {{{"", byId}, {"", QString(byId).replace("if00", "if01")}},
         "A50285BI-if00-port0 A50285BI-if01-port0"},
        {{{"a50285bi", "/dev/ttyUSB0"}, {"", byId}}, "a50285bi A50285BI-if00-port0"},
        {{{"", "/dev/serial/by-id/usb-1a86_USB_Serial-if00-port0"}}, "1a86_USB_Serial"},
        {{{"", "/dev/serial/by-path/pci-0000:00:14.0-usb-0:2.3:1.0-port0"}}, "usb-0_2.3_1.0"},
        {{{"", "/tmp/a/tty"}, {"", "/tmp/b/tty"}}, "_tmp_a_tty _tmp_b_tty"},
        {{{"", "/tmp/a/tty"}, {"", "/tmp/a_tty"}}, "tty a_tty"},
        {{{"", "x y"}, {"", "x_y"}}, "x_y-1 x_y-2"},
    };
    for (const auto& run : runs)
        EXPECT_EQ(zrk::boardNames(run.ports).join(' ').toStdString(), run.names);
}

} // namespace
