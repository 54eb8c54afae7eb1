#include "machine/MachineCatalog.h"

#include "machine/PortDescription.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace zrk {
namespace {

/// A system that tells about its ports in a folder.
struct FakeSystem {
    void write(const QString& name, const char* text = "") const {
        QFile file(path(name));
        EXPECT_TRUE(QDir().mkpath(QFileInfo(file).path()) && file.open(QIODevice::WriteOnly)) << text;
        file.write(text);
    }
    void link(const QString& name, const QString& target) const {
        EXPECT_TRUE(QDir().mkpath(QFileInfo(path(name)).path()) && QFile::link(path(target), path(name)));
    }
    void adapter(const char* device, const char* usb, const char* serial) const {
        const QString node = QString::fromLatin1(device);
        const QString hub = QStringLiteral("sys/devices/") + QString::fromLatin1(usb);
        for (const auto& [name, text] : {std::pair{"idVendor", "0403\n"},
                                         {"idProduct", "6001\n"},
                                         {"product", "FT232R USB UART\n"},
                                         {"manufacturer", "FTDI\n"}})
            write(hub + QLatin1Char('/') + QLatin1String(name), text);
        write(hub + QStringLiteral("/serial"), serial);
        write(hub + QStringLiteral("/1-0:1.0/") + node + QStringLiteral("/uevent"));
        link(QStringLiteral("sys/tty/%1/device").arg(node), hub + QStringLiteral("/1-0:1.0/") + node);
        write(QStringLiteral("dev/") + node);
        link(QStringLiteral("by-id/usb-FTDI_%1-if00").arg(QLatin1String(serial)),
             QStringLiteral("dev/") + node);
    }
    void builtIn(const char* device, const char* type) const {
        const QString node = QStringLiteral("sys/tty/") + QLatin1String(device);
        write(node + QStringLiteral("/type"), type);
        write(QStringLiteral("sys/devices/platform/uevent"));
        link(node + QStringLiteral("/device"), QStringLiteral("sys/devices/platform"));
        write(QStringLiteral("dev/") + QLatin1String(device));
    }
    [[nodiscard]] QString path(const QString& name) const { return folder.filePath(name); }

    /// What a user is told about all ports, "~" for the folder, a port a string.
    [[nodiscard]] std::string told(const PortNames::Overrides& named, const QStringList& existing) const {
        const PortNames names(named, {[](const QString&) { return QString(); },
                                      [&](const QString& device) { return existing.contains(device); }});
        const auto isPermitted = [this](const QString& device) { return device != forbidden; };
        QString all;
        for (PortEntry port : MachineCatalog(names, {},
                                             {path("sys/tty"), path("dev"), path("by-id"), path("proc"),
                                              path("lock"), isPermitted})
                                  .ports()) {
            EXPECT_TRUE(port.isPermitted.value_or(true) || !port.group.isEmpty());
            port.group = QStringLiteral("dialout"); // the files belong to who runs the test
            all += describe(port).join(QStringLiteral(" | ")) + QLatin1Char('\n');
        }
        return all.replace(folder.path(), QStringLiteral("~")).toStdString();
    }

    QTemporaryDir folder;
    QString forbidden;
};

TEST(MachineCatalog, ListsPortsWithHardwareAndPortsWithANameAndTellsWhoUsesThem) {
    FakeSystem system;
    system.adapter("ttyUSB0", "1-1", "A5");
    system.adapter("ttyUSB1", "1-2", "B6");
    system.builtIn("ttyS0", "4\n");
    system.builtIn("ttyS1", "0\n");
    system.write("sys/tty/tty1/uevent");
    system.write("proc/4711/comm", "minicom\n");
    system.link("proc/4711/fd/3", "dev/ttyUSB1");
    system.link("proc/4712/fd", "nowhere");
    system.write("proc/self/comm");
    system.link("board", "dev/ttyUSB1");
    system.link("by-id/usb-gone", "dev/ttyUSB9");
    const PortNames::Overrides named{{2, system.path("by-id/usb-FTDI_B6-if00")},
                                     {3, system.path("by-id/usb-gone")},
                                     {4, "rfc2217:rack:2217"},
                                     {5, system.path("board")}};
    system.forbidden = system.path("dev/ttyUSB0");
    const std::string b6 = "~/by-id/usb-FTDI_B6-if00 | COM2, COM5, ~/dev/ttyUSB1 | FT232R USB UART, FTDI | "
                           "serial number B6, USB 0403:6001 | in use by minicom (4711)\n";
    const std::string gone = "~/by-id/usb-gone | COM3 | not there: plug the adapter in\n";
    const std::string far =
        "rfc2217:rack:2217 | COM4 | on the network; whether it is there shows when it is opened\n";
    const std::string a5 = "~/by-id/usb-FTDI_A5-if00 | ~/dev/ttyUSB0 | FT232R USB UART, FTDI | serial number "
                           "A5, USB 0403:6001 | free | no permission: add yourself to the group dialout and "
                           "log in again\n";
    // The numbers 1 and 6 fall to devices of the system, one of them without a port behind it.
    EXPECT_EQ(system.told(named, {"/dev/ttyS0", "/dev/ttyS5"}),
              b6 + gone + "~/dev/ttyS0 | Built-in serial port | free\n" + a5 + far);

    // It is let go, the lock of another stays behind; then that one is started again.
    EXPECT_TRUE(QFile::remove(system.path("proc/4711/fd/3")));
    system.write("lock/LCK..ttyUSB1", "      4713\n");
    EXPECT_NE(system.told(named, {}).find("USB 0403:6001 | free\n"), std::string::npos);
    system.write("proc/4713/comm", "picocom\n");
    EXPECT_NE(system.told(named, {}).find("in use by picocom (4713)\n"), std::string::npos);
}

} // namespace
} // namespace zrk
